#pragma once

#include "XString.h"

namespace zm {

/// Strict readers: the whole text must be the value. Return false, with `res` unchanged, if it is not. The processor's
/// and the C library's settings have no influence.
/// @{
bool ParseValue(const char* text, int& res);
bool ParseValue(const char* text, unsigned& res);
bool ParseValue(const char* text, float& res);
bool ParseValue(const char* text, bool& res);
/// @}

/// What a text that cannot be read is not: "whole number" and so on.
/// @{
constexpr const char* KindOf(int)
{
    return "whole number";
}
constexpr const char* KindOf(unsigned)
{
    return "whole number from 0 on";
}
constexpr const char* KindOf(float)
{
    return "number";
}
constexpr const char* KindOf(bool)
{
    return "'true' or 'false'";
}
/// @}

/// The shortest text that ParseValue() reads as this value.
XString FloatText(float value);

}  // namespace zm
