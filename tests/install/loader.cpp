// Loads plugin.so (which links the library) with dlopen and runs it.
#include <cstdio>
#include <dlfcn.h>

int main(int argc, char** argv) {
    if (argc != 2)
        return 64;
    void* plugin = dlopen(argv[1], RTLD_NOW);
    if (!plugin) {
        std::fprintf(stderr, "dlopen failed: %s\n", dlerror());
        return 65;
    }
    auto run = reinterpret_cast<int (*)()>(dlsym(plugin, "RunPlugin"));
    const int result = run ? run() : 66;
    std::printf("plugin %s\n", result == 0 ? "ok" : "failed");
    return result;
}
