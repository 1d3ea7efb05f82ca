#pragma once

#include "XString.h"

class ZmConfigurationSection;

/// A named value of a configuration, stored as text whatever type it was set from. Only one thread at a time may change
/// it.
class ZmConfigurationEntry {
public:
    ~ZmConfigurationEntry() = default;
    ZmConfigurationEntry(const ZmConfigurationEntry&) = delete;
    ZmConfigurationEntry& operator=(const ZmConfigurationEntry&) = delete;

    /// The name, which never changes.
    const char* GetName() const { return m_Name.Text(); }

    /// The text, valid until the value changes.
    const char* GetValue() const { return m_Value.Text(); }

    /// The section that holds the entry, or that held it before it was removed.
    ZmConfigurationSection* GetParent() const { return m_Parent; }

    /// The number of the line, from 1 on, from which the entry was read; 0 for all other entries. Stays when the value
    /// changes.
    int GetLine() const { return m_Line; }

    /// Sets the value. Numbers become the text that printf() writes for "%d", "%u" and "%f": a float keeps six decimal
    /// places, and its decimal point is that of the process's locale. Null, and a text of more than 65534 characters,
    /// give an empty value.
    /// @{
    ZM_API void SetValue(const char* value);
    ZM_API void SetValue(int value);
    ZM_API void SetValue(unsigned int value);
    ZM_API void SetValue(float value);
    template <class Number, typename zm::IfWideNumber<Number>::Type = 0>
    void SetValue(Number value)
    {
        SetValue((XString() << value).Text());
    }
    /// @}

    /// Read the text as scanf() does for "%d", "%u" and "%f": leading white space and anything after the number are
    /// ignored, so "12abc" is 12. Return 1, or 0 if the text does not begin with a number; `res` must then not be used.
    /// @{
    ZM_API int GetValueAsInteger(int& res) const;
    ZM_API int GetValueAsUnsignedInteger(unsigned int& res) const;
    ZM_API int GetValueAsFloat(float& res) const;
    /// @}

    /// Frees a removed entry. May be called from any module: the memory returns to the library's own heap.
    ZM_API static void operator delete(void* block);

private:
    friend class ZmConfigurationSection;

    ZmConfigurationEntry(const XBaseString& name, ZmConfigurationSection* parent) : m_Name(name), m_Parent(parent) {}

    static void* operator new(size_t size) noexcept;

    /// Return false if memory ran out.
    /// @{
    bool Assign(const XBaseString& value)
    {
        m_Value = value;
        return m_Value.Length() == value.Length();
    }
    template <class Value>
    bool Assign(Value value)
    {
        SetValue(value);
        return !m_Value.IsEmpty();
    }
    /// @}

    XString m_Name;
    ZmConfigurationSection* m_Parent;
    XString m_Value;
    int m_Line = 0;
};
