#pragma once

#include "XString.h"

/// Splits a string in place: overwrites each delimiter that ends a token with NUL, without changing the string's
/// length. The string and the delimiters must outlive the tokenizer. A null set of delimiters is treated as empty,
/// which makes the whole string one token.
///
///     XStringTokenizer tokens(line, " \t");
///     for (const char* token = nullptr; (token = tokens.NextToken(token)) != nullptr;) { ... }
class XStringTokenizer {
public:
    /// Stores the arguments; does not change the string yet.
    XStringTokenizer(XString& string, const char* delimiters) : m_String(&string), m_Delimiters(delimiters) {}

    /// Returns the first token if `previous` is null, otherwise the one after `previous`, the result of the last call.
    /// Returns null if there is none, or if `previous` does not point into the string. Tokens are never empty.
    ZM_API const char* NextToken(const char* previous);

private:
    XString* m_String;
    const char* m_Delimiters;
};
