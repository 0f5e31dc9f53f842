// What the sanitizers need not tell. Compiled in, so that programs which tests start with an environment of their own
// have it too; weak, since a program is linked with it once for each of its libraries.

#define VESK_SANITIZER_HOOK extern "C" __attribute__((visibility("default"), weak))

/// Whole stacks for what is allocated, since leaks of libraries are told by the library.
VESK_SANITIZER_HOOK const char* __asan_default_options() { return "fast_unwind_on_malloc=0"; }

/// Standard error is what tests compare.
VESK_SANITIZER_HOOK const char* __lsan_default_options() { return "print_suppressions=0"; }

/// Keeps three texts of each connection for good.
VESK_SANITIZER_HOOK const char* __lsan_default_suppressions() { return "leak:libsecret-1.so\n"; }

/// Libraries of the system are not built with the thread sanitizer: it sees what they read and write on our behalf, and
/// not the locks and counters that order it.
VESK_SANITIZER_HOOK const char* __tsan_default_suppressions() {
    return "race:libglib-2.0.so\n"
           "race:libgobject-2.0.so\n"
           "race:libgio-2.0.so\n"
           "race:libgmime-3.0.so\n"
           "race:libavutil.so\n"
           "race:libavcodec.so\n"
           "race:libavformat.so\n"
           "race:libavfilter.so\n"
           "race:libswscale.so\n"
           "race:libswresample.so\n"
           "race:libx264.so\n"
           "race:libheif.so\n"
           "race:libsystemd.so\n"
           "race:libXau.so\n"
           // Reads of GObject's tables of classes, inlined into our own function.
           "race:vesk::maildir::GmimeMessageReader::headers\n"
           // Counts its references within the C++ runtime.
           "race:std::__exception_ptr::exception_ptr::_M_release\n";
}
