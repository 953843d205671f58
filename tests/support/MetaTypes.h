#pragma once

#include <QMetaType>

namespace test {

/// The number of the type that is registered under a name; 0 without one. Qt 5 and Qt 6 give it in different ways.
inline int metaTypeNamed(const char* name)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return QMetaType::type(name);
#else
    return QMetaType::fromName(name).id();
#endif
}

}  // namespace test
