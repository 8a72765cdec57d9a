#include "common/TestUtils.h"

#include <functional>
#include <memory>
#include <typeinfo>

using namespace QvXmlLib16;

namespace {

struct Observed {
    const std::type_info* type = nullptr;
    std::wstring message;
    std::wstring path;
    std::wstring full;
    bool hasInner = false;
};

Observed Catch(const std::function<void()>& raise) {
    Observed seen;
    try {
        raise();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const CQvException& e) {
        seen.type = &typeid(e);
        seen.message = e.GetMessage();
        seen.path = e.GetPath();
        seen.full = e.GetFullMessage();
        seen.hasInner = e.GetInnerException() != nullptr;
    }
    return seen;
}

} // namespace

TEST(QvException, ConstructorsCombineMessageAndPath) {
    const CQvException inner(L"cause", L"/c");

    struct Case {
        const char* name;
        std::function<void()> raise;
        const std::type_info& type;
        const wchar_t* message;
        const wchar_t* path;
        const wchar_t* full;
    };

    const Case cases[] = {
        {"default", [] { throw CQvException(); }, typeid(CQvException), L"", L"", L""},
        {"message only", [] { throw CQvException(L"m"); }, typeid(CQvException), L"m", L"", L"m"},
        {"empty path leaves the message alone", [] { throw CQvException(L"m", std::wstring()); },
         typeid(CQvException), L"m", L"", L"m"},
        {"path appended", [] { throw CQvException(L"m", std::wstring(L"/a/b")); },
         typeid(CQvException), L"m\nPath: /a/b", L"/a/b", L"m\nPath: /a/b"},
        {"message and inner", [&] { throw CQvException(L"m", inner); }, typeid(CQvException), L"m",
         L"", L"m\ncause\nPath: /c"},
        {"message, path and inner", [&] { throw CQvException(L"m", L"p", inner); },
         typeid(CQvException), L"m\nPath: p", L"p", L"m\nPath: p\ncause\nPath: /c"},
        {"validation", [] { throw CQvValidationException(L"v", L"/r/x"); },
         typeid(CQvValidationException), L"v\nPath: /r/x", L"/r/x", L"v\nPath: /r/x"},
        {"validation with empty path", [] { throw CQvValidationException(L"v", L""); },
         typeid(CQvValidationException), L"v", L"", L"v"},
        {"namespace", [] { throw CQvInvalidNamespaceException(L"n", L"/q"); },
         typeid(CQvInvalidNamespaceException), L"n\nPath: /q", L"/q", L"n\nPath: /q"},
        {"namespace with inner", [&] { throw CQvInvalidNamespaceException(L"n", L"", inner); },
         typeid(CQvInvalidNamespaceException), L"n", L"", L"n\ncause\nPath: /c"},
        {"invalid value", [] { throw CQvInvalidValueException(L"bad"); },
         typeid(CQvInvalidValueException), L"bad", L"", L"bad"},
        {"invalid state", [] { throw CQvInvalidStateException(L"s"); },
         typeid(CQvInvalidStateException), L"s", L"", L"s"},
        {"overflow", [] { throw CQvOverFlowException(L"o"); }, typeid(CQvOverFlowException), L"o",
         L"", L"o"},
        {"default subclass", [] { throw CQvInvalidValueException(); },
         typeid(CQvInvalidValueException), L"", L"", L""},
        // Copying the base part must not append the path a second time.
        {"subclass from a base with a path",
         [&] { throw CQvInvalidParamException(CQvException(L"m", L"p", inner)); },
         typeid(CQvInvalidParamException), L"m\nPath: p", L"p", L"m\nPath: p\ncause\nPath: /c"},
        {"validation from a base with a path",
         [] { throw CQvValidationException(CQvException(L"m", std::wstring(L"p"))); },
         typeid(CQvValidationException), L"m\nPath: p", L"p", L"m\nPath: p"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        Observed seen = Catch(tc.raise);
        ASSERT_NE(seen.type, nullptr);
        EXPECT_EQ(*seen.type, tc.type);
        EXPECT_EQ(seen.message, tc.message);
        EXPECT_EQ(seen.path, tc.path);
        EXPECT_EQ(seen.full, tc.full);
    }
}

TEST(QvException, InnerChainIsAPrivateCopy) {
    auto innermost = std::make_unique<CQvInvalidValueException>(L"innermost");
    auto middle = std::make_unique<CQvValidationException>(L"inner", L"/a", *innermost);
    auto outer = std::make_unique<CQvException>(L"outer", *middle);

    EXPECT_EQ(outer->GetFullMessage(), L"outer\ninner\nPath: /a\ninnermost");
    EXPECT_EQ(outer->GetMessage(), L"outer");
    const CQvException* held = outer->GetInnerException();
    ASSERT_NE(held, nullptr);
    EXPECT_NE(held, middle.get());
    EXPECT_EQ(typeid(*held), typeid(CQvValidationException));
    ASSERT_NE(held->GetInnerException(), nullptr);
    EXPECT_EQ(typeid(*held->GetInnerException()), typeid(CQvInvalidValueException));
    EXPECT_EQ(held->GetInnerException()->GetInnerException(), nullptr);

    // The originals go first: the outer chain must not point into them.
    innermost.reset();
    middle.reset();
    EXPECT_EQ(outer->GetFullMessage(), L"outer\ninner\nPath: /a\ninnermost");

    // And the other way round: destroying an outer exception leaves the inner it was given.
    CQvException given(L"given");
    { CQvException wrapper(L"w", given); }
    EXPECT_EQ(given.GetFullMessage(), L"given");
    EXPECT_EQ(given.GetInnerException(), nullptr);
}

TEST(QvException, CloneKeepsDynamicType) {
    const CQvException cause(L"cause");

    struct Case {
        const char* name;
        std::function<CQvException*()> make;
        const std::type_info& type;
        const wchar_t* full;
        const wchar_t* path;
    };

    const Case cases[] = {
        {"base", [&] { return new CQvException(L"m", L"p", cause); }, typeid(CQvException),
         L"m\nPath: p\ncause", L"p"},
        {"validation", [&] { return new CQvValidationException(L"m", L"p", cause); },
         typeid(CQvValidationException), L"m\nPath: p\ncause", L"p"},
        {"invalid value", [&] { return new CQvInvalidValueException(L"m", cause); },
         typeid(CQvInvalidValueException), L"m\ncause", L""},
        {"invalid namespace", [&] { return new CQvInvalidNamespaceException(L"m", L"p", cause); },
         typeid(CQvInvalidNamespaceException), L"m\nPath: p\ncause", L"p"},
        {"invalid state", [&] { return new CQvInvalidStateException(L"m", cause); },
         typeid(CQvInvalidStateException), L"m\ncause", L""},
        {"invalid param", [&] { return new CQvInvalidParamException(L"m", cause); },
         typeid(CQvInvalidParamException), L"m\ncause", L""},
        {"overflow", [&] { return new CQvOverFlowException(L"m"); }, typeid(CQvOverFlowException),
         L"m", L""},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        std::unique_ptr<CQvException> original(tc.make());
        const CQvException& asBase = *original;
        std::unique_ptr<CQvException> clone(asBase.Clone());
        ASSERT_NE(clone, nullptr);
        EXPECT_NE(clone.get(), original.get());
        EXPECT_EQ(typeid(*clone), tc.type);
        EXPECT_EQ(clone->GetFullMessage(), tc.full);
        EXPECT_EQ(clone->GetPath(), tc.path);
        if (original->GetInnerException()) {
            ASSERT_NE(clone->GetInnerException(), nullptr);
            EXPECT_NE(clone->GetInnerException(), original->GetInnerException());
        } else {
            EXPECT_EQ(clone->GetInnerException(), nullptr);
        }
        original.reset();
        EXPECT_EQ(clone->GetFullMessage(), tc.full);
    }
}

TEST(QvException, CloneAndCopyKeepValidationDetail) {
    CQvInvalidNamespaceException original(L"m", L"p");
    original.SetDetail(L"extra");
    EXPECT_EQ(CQvValidationException(L"m", L"p").GetDetail(), L"");

    std::unique_ptr<CQvException> clone(static_cast<const CQvException&>(original).Clone());
    auto* asValidation = dynamic_cast<CQvValidationException*>(clone.get());
    ASSERT_NE(asValidation, nullptr);
    EXPECT_EQ(asValidation->GetDetail(), L"extra");

    CQvInvalidNamespaceException copy(original);
    EXPECT_EQ(copy.GetDetail(), L"extra");
    EXPECT_EQ(copy.GetMessage(), L"m\nPath: p");
    EXPECT_EQ(copy.GetPath(), L"p");
}

TEST(QvException, AssignmentIsPartial) {
    struct Case {
        const char* name;
        std::function<CQvException()> source;
        const wchar_t* message;
        const wchar_t* full;
        bool hasInner;
    };

    const Case cases[] = {
        {"source with path and inner",
         [] { return CQvException(L"b", L"pb", CQvInvalidStateException(L"innerB")); },
         L"b\nPath: pb", L"b\nPath: pb\ninnerB", true},
        {"source without inner", [] { return CQvException(L"b"); }, L"b", L"b", false},
        {"empty source", [] { return CQvException(); }, L"", L"", false},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CQvException target(L"a", L"pa", CQvException(L"innerA"));
        const CQvException* oldInner = target.GetInnerException();
        ASSERT_NE(oldInner, nullptr);
        {
            const CQvException source = tc.source();
            target = source;
            EXPECT_EQ(target.GetMessage(), tc.message);
            EXPECT_EQ(target.GetPath(), L"pa");
            EXPECT_EQ(target.GetFullMessage(), tc.full);
            if (tc.hasInner) {
                ASSERT_NE(target.GetInnerException(), nullptr);
                EXPECT_NE(target.GetInnerException(), source.GetInnerException());
                EXPECT_EQ(typeid(*target.GetInnerException()), typeid(CQvInvalidStateException));
            } else {
                EXPECT_EQ(target.GetInnerException(), nullptr);
            }
        }
        // The source is gone and the inner was replaced; the old pointer must still be readable.
        EXPECT_EQ(oldInner->GetMessage(), L"innerA");
        EXPECT_EQ(target.GetFullMessage(), tc.full);
    }

    CQvException self(L"m", L"p", CQvException(L"inner"));
    const CQvException* before = self.GetInnerException();
    CQvException& alias = self;
    self = alias;
    EXPECT_EQ(self.GetFullMessage(), L"m\nPath: p\ninner");
    EXPECT_EQ(before->GetMessage(), L"inner");
}
