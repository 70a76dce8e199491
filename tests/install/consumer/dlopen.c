/* Opens the library as an interpreter does, by the name without a version, and prints which file that is. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdio.h>

int main(void)
{
    void* library = dlopen("libkeslmx.so", RTLD_NOW);
    void* function = library ? dlsym(library, "keslGetLibVersion") : NULL;
    Dl_info info;
    if (!function || !dladdr(function, &info)) {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    puts(info.dli_fname);
    return 0;
}
