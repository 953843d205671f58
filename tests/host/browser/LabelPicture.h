#pragma once

#include <QLabel>
#include <QPixmap>

namespace test {

/// The picture that a label shows; null when it shows none. Qt 5 and Qt 6 give it in different ways.
inline QPixmap labelPicture(const QLabel& label)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return label.pixmap(Qt::ReturnByValue);
#else
    return label.pixmap();
#endif
}

}  // namespace test
