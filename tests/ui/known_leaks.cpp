// Leaks that are not ours, for the leak check of AddressSanitizer. Without it nothing calls this.

extern "C" const char *__lsan_default_suppressions();

// Qt 5.15 does not free the screens of its offscreen platform.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libqoffscreen.so\n"
           "leak:QScreen::QScreen\n"
           "leak:QPlatformScreen::QPlatformScreen\n"
           "leak:QWindowSystemInterface::handleScreenAdded\n";
}
