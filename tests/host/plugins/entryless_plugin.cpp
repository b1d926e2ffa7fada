// A library that can be loaded, and is no plug-in.
extern "C" int PluginMane() { return 0; }
