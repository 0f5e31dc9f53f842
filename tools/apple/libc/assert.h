// No guard: NDEBUG counts anew each time.
#undef assert

#ifdef NDEBUG
#define assert(condition) ((void)0)
#else
#define assert(condition) ((condition) ? (void)0 : __assert_rtn(__func__, __FILE__, __LINE__, #condition))
#endif

#ifdef __cplusplus
extern "C"
#endif
    void
    __assert_rtn(const char*, const char*, int, const char*) __attribute__((noreturn));
