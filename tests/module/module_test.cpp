// Loading and unloading the shared library: every load starts from the
// module's set-up, and every unload gives back what the library held, also
// blocks and objects a host never freed (the sanitizer build's leak check
// at exit sees anything left).
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <type_traits>

#include <tessaline/tessaline.h>

namespace {

template <class F>
F Symbol(void* lib, const char* name) {
  return reinterpret_cast<F>(dlsym(lib, name));
}

TEST(Module, LoadsAndUnloadsAHundredTimes) {
  const char* build = std::getenv("TESSALINE_BUILD_DIR");
  if (!build) GTEST_SKIP() << "TESSALINE_BUILD_DIR is not set (run through ctest)";
  std::string path = std::string(build) + "/libtessaline.so";
  for (int round = 0; round < 100; ++round) {
    void* lib = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(lib, nullptr) << dlerror();
    auto module = Symbol<const Tessaline_Module* (*)()>(lib, "Tessaline_Get_Module");
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(module()->initialized, 1);
    // Blocks, objects, a screen context and a string the host leaves behind.
    // SIZE_T is unsigned long on 64-bit targets and unsigned long long on
    // 32-bit ones, and the mangled name says which.
    const char* alloc_name =
        std::is_same_v<SIZE_T, unsigned long> ? "_Z11GlobalAllocjm" : "_Z11GlobalAllocjy";
    auto alloc = Symbol<HGLOBAL (*)(UINT, SIZE_T)>(lib, alloc_name);
    auto pen = Symbol<HPEN (*)(int, int, COLORREF)>(lib, "_Z9CreatePeniij");
    auto get_dc = Symbol<HDC (*)(HWND)>(lib, "_Z5GetDCP6HWND__");
    auto set_string = Symbol<void (*)(UINT, const char*)>(lib, "_Z17SetStringResourcejPKc");
    auto load_string =
        Symbol<int (*)(HINSTANCE, UINT, char*, int)>(lib, "_Z11LoadStringAP11HINSTANCE__jPci");
    ASSERT_TRUE(alloc && pen && get_dc && set_string && load_string);
    char text[16];
    EXPECT_EQ(load_string(nullptr, 20023, text, 16), 0);  // a fresh load knows no strings
    for (int i = 0; i < 10; ++i) EXPECT_NE(alloc(GHND, 1000), 0u);
    EXPECT_NE(pen(PS_SOLID, 1, 0), nullptr);
    EXPECT_NE(get_dc(nullptr), nullptr);
    set_string(20023, "Library - ");
    ASSERT_EQ(dlclose(lib), 0);
    // Truly unloaded: nothing keeps the library mapped.
    EXPECT_EQ(dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr);
  }
}

}  // namespace
