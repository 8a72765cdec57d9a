#pragma once

// Shared helpers for the GoogleTest suites.

#include <QvXmlLib16/QvXmlLib16.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <typeinfo>
#include <unistd.h>
#include <vector>

namespace qvtest {

inline std::string Narrow(const std::wstring& s) {
    std::string out;
    for (wchar_t c : s)
        out += (c >= 32 && c < 127) || c == L'\n' ? static_cast<char>(c) : '?';
    return out;
}

// Runs call and expects exactly an E (not a subclass of it) with the exact message.
template <class E, class Fn>
void ExpectThrowMsg(Fn&& call, const std::wstring& message) {
    try {
        call();
        ADD_FAILURE() << "expected " << typeid(E).name() << " with \"" << Narrow(message)
                      << "\", nothing was thrown";
    } catch (const QvXmlLib16::CQvException& e) {
        EXPECT_EQ(typeid(e), typeid(E))
            << "expected " << typeid(E).name() << ", got " << typeid(e).name();
        EXPECT_EQ(Narrow(e.GetMessage()), Narrow(message));
        EXPECT_EQ(e.GetMessage(), message);
    }
}

inline std::vector<unsigned char> Bytes(const QvXmlLib16::CBinaryData& data) {
    const unsigned char* p = data.GetData();
    return std::vector<unsigned char>(p, p + data.GetLength());
}

inline std::vector<unsigned char> Bytes(std::initializer_list<int> values) {
    std::vector<unsigned char> out;
    for (int v : values)
        out.push_back(static_cast<unsigned char>(v));
    return out;
}

// A fresh directory under /tmp, removed with its files at the end of the scope.
class TempDir {
public:
    TempDir() {
        char pattern[] = "/tmp/qvxml-test-XXXXXX";
        const char* made = mkdtemp(pattern);
        m_path = made ? made : "";
    }

    ~TempDir() {
        if (!m_path.empty())
            std::system(("rm -rf '" + m_path + "'").c_str());
    }

    std::string File(const std::string& name) const { return m_path + "/" + name; }

    std::wstring WFile(const std::string& name) const {
        std::string s = File(name);
        return std::wstring(s.begin(), s.end());
    }

private:
    std::string m_path;
};

// A heap array of exactly the given size, so AddressSanitizer reports any access past its end.
// Size 0 still gives a non-null pointer (a counting call passes null on purpose, a test doesn't).
template <class T>
class ExactBuffer {
public:
    explicit ExactBuffer(size_t size, T fill = T()) : m_data(new T[size]), m_size(size) {
        std::fill(m_data.get(), m_data.get() + size, fill);
    }

    template <class U>
    explicit ExactBuffer(const std::vector<U>& values) : ExactBuffer(values.size()) {
        std::copy(values.begin(), values.end(), m_data.get());
    }

    T* begin() const { return m_data.get(); }

    T* end() const { return m_data.get() + m_size; }

    size_t size() const { return m_size; }

    std::vector<T> Head(size_t count) const { return std::vector<T>(begin(), begin() + count); }

private:
    std::unique_ptr<T[]> m_data;
    size_t m_size;
};

// A new[] copy of bytes, for interfaces that adopt or replace the caller's buffer.
inline unsigned char* NewArray(const std::vector<unsigned char>& bytes) {
    unsigned char* out = new unsigned char[bytes.size()];
    std::copy(bytes.begin(), bytes.end(), out);
    return out;
}

inline std::wstring Widen(const std::string& s) {
    return std::wstring(s.begin(), s.end());
}

inline std::vector<unsigned char> ReadFileBytes(const std::string& path) {
    std::vector<unsigned char> out;
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f)
        return out;
    unsigned char buf[65536];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0)
        out.insert(out.end(), buf, buf + n);
    std::fclose(f);
    return out;
}

} // namespace qvtest
