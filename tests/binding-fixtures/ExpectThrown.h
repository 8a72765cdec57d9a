#pragma once

// Exact checks of an exception and of the one it wraps.

#include "common/TestUtils.h"

#include <gtest/gtest.h>

#include <typeinfo>

namespace fixtures {

struct Thrown {
    Thrown(const std::type_info* type, std::wstring message, std::wstring path,
           const std::type_info* innerType = nullptr, std::wstring innerMessage = L"")
        : type(type),
          message(std::move(message)),
          path(std::move(path)),
          innerType(innerType),
          innerMessage(std::move(innerMessage)) {}

    const std::type_info* type;
    std::wstring message; // GetMessage(): a located exception ends in "\nPath: <path>"
    std::wstring path;
    const std::type_info* innerType; // null: no inner exception
    std::wstring innerMessage;
};

inline void ExpectSame(const QvXmlLib16::CQvException& e, const Thrown& expected) {
    EXPECT_EQ(typeid(e), *expected.type) << "got " << typeid(e).name();
    EXPECT_EQ(e.GetMessage(), expected.message);
    EXPECT_EQ(e.GetPath(), expected.path);
    const QvXmlLib16::CQvException* inner = e.GetInnerException();
    if (!expected.innerType) {
        EXPECT_EQ(inner, nullptr);
        return;
    }
    ASSERT_NE(inner, nullptr);
    EXPECT_EQ(typeid(*inner), *expected.innerType) << "inner is " << typeid(*inner).name();
    EXPECT_EQ(inner->GetMessage(), expected.innerMessage);
}

template <class Fn>
void ExpectThrown(Fn&& call, const Thrown& expected) {
    try {
        call();
        ADD_FAILURE() << "nothing was thrown, expected \"" << qvtest::Narrow(expected.message)
                      << "\"";
    } catch (const QvXmlLib16::CQvException& e) {
        ExpectSame(e, expected);
    }
}

} // namespace fixtures
