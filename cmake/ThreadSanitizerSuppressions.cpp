// Libraries of the system are not built with the thread sanitizer: it sees what they read and write on our behalf, and
// not the locks and counters that order it. Compiled in, so that programs which tests start with an environment of
// their own have it too; weak, since a program is linked with it once for each of its libraries.

extern "C" __attribute__((visibility("default"), weak)) const char* __tsan_default_suppressions() {
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
