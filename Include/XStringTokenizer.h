#pragma once

#include "XString.h"

/// Splits a string in place: each delimiter that ends a token is overwritten with NUL, while the string's length
/// stays. The string and the delimiters must outlive the tokenizer; a null set of delimiters is an empty one,
/// and makes one token of the whole string.
///
///     XStringTokenizer tokens(line, " \t");
///     for (const char* token = nullptr; (token = tokens.NextToken(token)) != nullptr;) { ... }
class XStringTokenizer {
public:
    /// Changes nothing yet.
    XStringTokenizer(XString& string, const char* delimiters) : m_String(&string), m_Delimiters(delimiters) {}

    /// The first token for null, then the one after `previous`, which is what the last call returned. Null when
    /// there is none, or when `previous` does not point into the string. Tokens are never empty.
    ZM_API const char* NextToken(const char* previous);

private:
    XString* m_String;
    const char* m_Delimiters;
};
