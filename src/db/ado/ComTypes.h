#pragma once

#include "AdoInterfaces.h"

#include <string>
#include <string_view>
#include <utility>

// Owners of what COM hands out.

template<typename Interface>
class ComPtr {
public:
    ComPtr() = default;
    // Takes over a reference that was counted already.
    explicit ComPtr(Interface* object)
        : m_object(object) {}
    ComPtr(ComPtr&& other) noexcept
        : m_object(std::exchange(other.m_object, nullptr)) {}
    ComPtr& operator=(ComPtr&& other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~ComPtr() {
        if (m_object)
            m_object->Release();
    }

    Interface* get() const { return m_object; }
    Interface* operator->() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }
    // Where a call puts its result; nothing must be held.
    Interface** out() { return &m_object; }

private:
    Interface* m_object = nullptr;
};

class Bstr {
public:
    Bstr() = default;
    explicit Bstr(std::wstring_view text)
        : m_text(SysAllocStringLen(text.data(), UINT(text.size()))) {}
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(m_text); }

    BSTR get() const { return m_text; }
    BSTR* out() { return &m_text; }
    std::wstring text() const {
        return m_text ? std::wstring(m_text, SysStringLen(m_text)) : std::wstring();
    }

private:
    BSTR m_text = nullptr;
};

class Variant {
public:
    Variant() { VariantInit(&m_value); }
    explicit Variant(LONG number)
        : Variant() {
        m_value.vt = VT_I4;
        m_value.lVal = number;
    }
    explicit Variant(IDispatch* object)
        : Variant() {
        object->AddRef();
        m_value.vt = VT_DISPATCH;
        m_value.pdispVal = object;
    }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    ~Variant() { VariantClear(&m_value); }

    // An argument that is left out.
    static void setMissing(Variant& value) {
        value.m_value.vt = VT_ERROR;
        value.m_value.scode = ado::missingArgument;
    }

    const VARIANT& get() const { return m_value; }
    VARIANT* out() { return &m_value; }

private:
    VARIANT m_value;
};
