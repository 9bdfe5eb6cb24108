// What a dialog asks of the system beside its controls: messages, files, dialogs over it.

#include <algorithm>

#include "platform/files.h"
#include "platform/windows/win_dialog.h"
//
#include <commdlg.h>

namespace gantry::platform {

namespace {

/// Each part ended by a zero, all ended by another.
std::string SystemFilters(const char* filters) {
  std::string result = filters;
  std::ranges::replace(result, '|', '\0');
  return result + '\0';
}

}  // namespace

void WinDialog::ShowMessage(const std::string& text) {
  char title[128] = "";
  ::GetWindowTextA(window_, title, sizeof title);
  ::MessageBoxA(window_, text.c_str(), title, MB_OK | MB_ICONWARNING);
}

std::optional<std::string> WinDialog::AskForFile(const FileRequest& request) {
  constexpr DWORD kRoom = 4096;
  std::string path(kRoom, '\0');
  const std::string filters = SystemFilters(request.filters);
  OPENFILENAMEA asked = {};
  asked.lStructSize = sizeof asked;
  asked.hwndOwner = window_;
  asked.lpstrFilter = filters.c_str();
  asked.lpstrFile = path.data();
  asked.nMaxFile = kRoom;
  asked.lpstrDefExt = request.defaultExtension;
  asked.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  if (::GetOpenFileNameA(&asked) == 0) return std::nullopt;
  return std::string(path.c_str());
}

int WinDialog::RunDialog(DialogHandler& handler) { return WinDialog(handler).Run(window_); }

void WinDialog::ShowHelp(const std::string& file, uint32_t topic) {
  constexpr UINT kHelpContext = 15;
  using HtmlHelp = HWND WINAPI(HWND caller, LPCSTR path, UINT command, DWORD_PTR data);
  if (!FileExists(file)) return;
  const HMODULE viewer = ::LoadLibraryA("hhctrl.ocx");  // stays: its window outlives this call
  if (viewer == nullptr) return;
  const auto show =
      reinterpret_cast<HtmlHelp*>(reinterpret_cast<void*>(::GetProcAddress(viewer, "HtmlHelpA")));
  if (show != nullptr) show(window_, file.c_str(), kHelpContext, topic);
}

void WinDialog::SetWaitCursor(bool isWaiting) {
  ::SetCursor(::LoadCursorA(nullptr, isWaiting ? IDC_WAIT : IDC_ARROW));
}

void WinDialog::Pause(int milliseconds) {
  ::UpdateWindow(window_);
  ::Sleep(static_cast<DWORD>(milliseconds));
}

}  // namespace gantry::platform
