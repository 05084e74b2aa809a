// A plug-in of nothing: what is left of loading is the linker's work for the libraries behind it.
extern "C" void emptyPlugin() {}
