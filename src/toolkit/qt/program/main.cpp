// The process that shows a host's dialogs; only the library beside it starts one. With an argument
// it only finds out whether it could: its exit status is 0 then.

extern "C" void GantryServeDialogs();
extern "C" void GantryTryDialogs();

int main(int argc, char** /*argv*/) { argc > 1 ? GantryTryDialogs() : GantryServeDialogs(); }
