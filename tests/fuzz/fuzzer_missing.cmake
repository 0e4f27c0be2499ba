message(FATAL_ERROR
    "${NAME} was not run: there is no clang with libFuzzer. tools/setup.sh installs "
    "it (Debian: clang and libclang-rt-dev); then configure again.")
