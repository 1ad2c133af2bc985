/*
 * A program that ends with _exit() leaves no counters behind. Linked in with --wrap=_exit where coverage is measured, this has it write them
 * first.
 */

extern "C" void __gcov_dump();
extern "C" [[noreturn]] void __real__exit(int status);

extern "C" [[noreturn]] void __wrap__exit(int status)
{
    __gcov_dump();
    __real__exit(status);
}
