// Qt's offscreen platform forgets its screen when the application object goes. Known to the leak
// sanitizer by this name; other builds never call it.
extern "C" const char* __lsan_default_suppressions();

extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions()
{
    return "leak:libqoffscreen.so\n"
           "leak:QScreen::QScreen\n"
           "leak:QWindowSystemInterface::handleScreenAdded\n"
           "leak:QPlatformScreen::QPlatformScreen\n"
           "leak:QtSharedPointer::ExternalRefCountData::getAndRef\n"
           "leak:QObject::QObject\n";
}
