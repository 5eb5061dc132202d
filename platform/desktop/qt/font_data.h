#pragma once

#include <QFont>
#include <QFontMetrics>

#include "platform/desktop/device_context.h"

namespace jotlet {

// The face that stands for a role, at a height as FontDescription counts it.
QFont MakeQtFont(const FontDescription& description);

struct Font::Data {
    explicit Data(const FontDescription& description) : font(MakeQtFont(description)), metrics(font) {}
    QFont font;
    QFontMetrics metrics;
};

}  // namespace jotlet
