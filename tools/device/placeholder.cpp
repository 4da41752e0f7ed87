// Stands where a library or program of Wine stands in a prefix: Wine takes its own file for it,
// wherever that is.
extern "C" int __stdcall Start() {
    return 1;
}
