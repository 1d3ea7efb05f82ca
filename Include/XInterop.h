#pragma once

// Interoperability of strings and containers with the standard library: std::string_view, output streams, range-based
// for, algorithms and std::hash. ZmMath.h does not include this header, because of the headers it needs.

#include "XHashTable.h"
#include "XString.h"

#include <functional>
#include <iterator>
#include <ostream>
#include <string_view>

/// Views the text of a string; valid until the string changes.
inline std::string_view XView(const XBaseString& string)
{
    return {string.Text(), string.Length()};
}

/// Creates a string from all characters of a view, including NULs; empty if there are more than
/// XBaseString::kMaxLength.
inline XString XFromView(std::string_view view)
{
    XString string;
    if (!view.empty()) {
        string.Create(view.data(), view.size() > size_t(XBaseString::kMaxLength) ? -1 : int(view.size()));
    }
    return string;
}

/// Writes all characters of the string, with the stream's width and fill.
inline std::ostream& operator<<(std::ostream& stream, const XBaseString& string)
{
    return stream << XView(string);
}

/// for (char c : string)
inline const char* begin(const XBaseString& string)
{
    return string.Text();
}
inline const char* end(const XBaseString& string)
{
    return string.Text() + string.Length();
}

/// for (T& item : array)
template <class T>
T* begin(XArray<T>& array)
{
    return array.Begin();
}
template <class T>
T* end(XArray<T>& array)
{
    return array.End();
}
template <class T>
const T* begin(const XArray<T>& array)
{
    return array.Begin();
}
template <class T>
const T* end(const XArray<T>& array)
{
    return array.End();
}

/// for (auto& item : table), with item.key and item.value
template <class T, class K, class H, class E>
typename XHashTable<T, K, H, E>::Iterator begin(XHashTable<T, K, H, E>& table)
{
    return table.Begin();
}
template <class T, class K, class H, class E>
typename XHashTable<T, K, H, E>::Iterator end(XHashTable<T, K, H, E>& table)
{
    return table.End();
}
template <class T, class K, class H, class E>
typename XHashTable<T, K, H, E>::ConstIterator begin(const XHashTable<T, K, H, E>& table)
{
    return table.Begin();
}
template <class T, class K, class H, class E>
typename XHashTable<T, K, H, E>::ConstIterator end(const XHashTable<T, K, H, E>& table)
{
    return table.End();
}

namespace std {

/// Makes table positions iterators: std::find_if(table.Begin(), table.End(), ...)
template <class Entry, class Item>
struct iterator_traits<zm::TablePosition<Entry, Item>> {
    using iterator_category = forward_iterator_tag;  ///< they advance only
    using value_type = Item;
    using difference_type = ptrdiff_t;
    using pointer = Entry*;
    using reference = Entry&;
};

/// Lets strings be keys of the standard library's containers.
template <>
struct hash<XString> {
    /// Hashes the text as the standard library does.
    size_t operator()(const XString& text) const noexcept { return hash<string_view>()(XView(text)); }
};

}  // namespace std
