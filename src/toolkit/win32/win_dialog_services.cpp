// What a dialog asks of the system beside its controls: messages, files, dialogs over it.

#include <algorithm>

#include "platform/files.h"
#include "platform/windows/wide_text.h"
#include "toolkit/win32/win_dialog.h"
//
#include <commdlg.h>

namespace gantry::platform {

namespace {

/// Each part ended by a zero, all ended by another.
std::wstring SystemFilters(const char* filters) {
  std::wstring result = Widen(CP_ACP, filters);
  std::ranges::replace(result, L'|', L'\0');
  return result + L'\0';
}

/// A path in the code page of this process; its short form where that is needed, and none where
/// neither can be told there.
std::optional<std::string> InCodePage(const std::wstring& path) {
  const std::string narrow = Narrow(CP_ACP, path);
  if (Widen(CP_ACP, narrow) == path) return narrow;
  std::wstring brief(path.size() + MAX_PATH, L'\0');
  brief.resize(::GetShortPathNameW(path.c_str(), brief.data(), static_cast<DWORD>(brief.size())));
  const std::string narrowBrief = Narrow(CP_ACP, brief);
  if (brief.empty() || Widen(CP_ACP, narrowBrief) != brief) return std::nullopt;
  return narrowBrief;
}

}  // namespace

void WinDialog::ShowMessage(const std::string& text) {
  char title[128] = "";
  ::GetWindowTextA(window_, title, sizeof title);
  ::MessageBoxA(window_, text.c_str(), title, MB_OK | MB_ICONWARNING);
}

std::optional<std::string> WinDialog::AskForFile(const FileRequest& request) {
  constexpr DWORD kRoom = 4096;
  std::wstring path(kRoom, L'\0');
  const std::wstring filters = SystemFilters(request.filters);
  const std::wstring extension = Widen(CP_ACP, request.defaultExtension);
  const std::wstring folder = Widen(CP_ACP, request.folder);
  OPENFILENAMEW asked = {};
  asked.lStructSize = sizeof asked;
  asked.hwndOwner = window_;
  asked.lpstrFilter = filters.c_str();
  asked.lpstrFile = path.data();
  asked.nMaxFile = kRoom;
  asked.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
  asked.lpstrDefExt = extension.c_str();
  asked.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  if (::GetOpenFileNameW(&asked) == 0) return std::nullopt;
  auto picked = InCodePage(path.c_str());
  if (!picked) {
    ShowMessage(
        "The path has characters that this machine's code page lacks. Rename or move the file.");
  }
  return picked;
}

int WinDialog::RunDialog(DialogHandler& handler) { return WinDialog(handler).Run(window_); }

bool WinDialog::ShowHelp(const std::string& file, uint32_t topic) {
  constexpr UINT kHelpContext = 15;
  using HtmlHelp = HWND WINAPI(HWND caller, LPCSTR path, UINT command, DWORD_PTR data);
  if (!FileExists(file)) return false;
  const HMODULE viewer = ::LoadLibraryA("hhctrl.ocx");  // stays: its window outlives this call
  if (viewer == nullptr) return false;
  const auto show =
      reinterpret_cast<HtmlHelp*>(reinterpret_cast<void*>(::GetProcAddress(viewer, "HtmlHelpA")));
  return show != nullptr && show(window_, file.c_str(), kHelpContext, topic) != nullptr;
}

void WinDialog::SetWaitCursor(bool isWaiting) {
  ::SetCursor(::LoadCursorA(nullptr, isWaiting ? IDC_WAIT : IDC_ARROW));
}

void WinDialog::Pause(int milliseconds) {
  ::UpdateWindow(window_);
  ::Sleep(static_cast<DWORD>(milliseconds));
}

}  // namespace gantry::platform
