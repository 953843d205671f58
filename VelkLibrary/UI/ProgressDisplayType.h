#pragma once

#include <QMetaType>

#include <cstdint>

/// How progress is described beside the gauge. Kept in preference 236 as an int; with any other value there,
/// progress is not described and there is no tooltip.
enum class ProgressDisplayType : std::int32_t {
    BarOnly = 1,     ///< the bar alone
    Percentage = 2,  ///< text 2749 with the percentage
    Amounts = 3      ///< text 2750 with the amount done, the whole amount and the unit
};

Q_DECLARE_METATYPE(ProgressDisplayType)
