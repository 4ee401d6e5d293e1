# WebAssembly by Debian's clang, wasi-libc and libc++ for wasm32.
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR wasm32)
set(CMAKE_CXX_COMPILER clang++-14)
set(CMAKE_CXX_COMPILER_TARGET wasm32-wasi)
set(CMAKE_CXX_FLAGS_INIT "-flto")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-mexec-model=reactor -flto -Wl,--strip-all")
# A program without main() doesn't link by itself, as a test of the compiler would.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
