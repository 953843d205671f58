#pragma once

#include "host/catalog/ItemSizes.h"
#include "host/support/QtText.h"

#include <QString>

namespace VelkHost {

/// "505 × 584 × 850 mm": width, depth and height; empty where none is known. The same in every language.
inline QString shownSize(const ItemSize& size)
{
    return size.isKnown() ? qtText(sizeText(size)) + QStringLiteral(" mm") : QString();
}

}  // namespace VelkHost
