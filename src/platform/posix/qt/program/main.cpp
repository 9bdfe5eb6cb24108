// The process that shows a host's dialogs; only the library beside it starts one.

extern "C" void GantryServeDialogs();

int main() { GantryServeDialogs(); }
