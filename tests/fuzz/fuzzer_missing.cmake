message(FATAL_ERROR
    "The header decoders were not fuzzed: there is no clang with libFuzzer. tools/setup.sh installs "
    "it (Debian: clang and libclang-rt-dev); then configure again.")
