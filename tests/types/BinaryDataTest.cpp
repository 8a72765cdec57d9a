#include "common/TestUtils.h"

#include <functional>
#include <utility>

using namespace QvXmlLib16;
using qvtest::Bytes;
using qvtest::ExpectThrowMsg;
using ByteVec = std::vector<unsigned char>;

namespace {

ByteVec Pattern(size_t n) {
    ByteVec bytes(n);
    for (size_t i = 0; i < n; ++i)
        bytes[i] = static_cast<unsigned char>(i * 7 + 1);
    return bytes;
}

CBinaryData Copied(const ByteVec& bytes) {
    ByteVec source = bytes;
    return CBinaryData(source.data(), static_cast<unsigned long>(source.size()), false);
}

const unsigned char* SharedData(const CBinaryData& data) {
    return data.GetData();
}

} // namespace

TEST(BinaryData, ConstructionAndCapacity) {
    struct Case {
        const char* name;
        std::function<CBinaryData()> make;
        ByteVec bytes;
        unsigned long capacity;
    };

    const Case cases[] = {
        {"default", [] { return CBinaryData(); }, {}, 0},
        {"ten bytes copied", [] { return Copied(Pattern(10)); }, Pattern(10), 8192},
        {"4096 bytes copied", [] { return Copied(Pattern(4096)); }, Pattern(4096), 8192},
        {"4097 bytes copied", [] { return Copied(Pattern(4097)); }, Pattern(4097), 8194},
        {"5000 bytes copied", [] { return Copied(Pattern(5000)); }, Pattern(5000), 10000},
        {"ten bytes adopted", [] { return CBinaryData(qvtest::NewArray(Pattern(10)), 10, true); },
         Pattern(10), 10},
        {"length zero is empty",
         [] {
             unsigned char byte = 1;
             return CBinaryData(&byte, 0, false);
         },
         {},
         0},
        {"wide text as raw units",
         [] { return CBinaryData(L"AB"); },
         {0x41, 0, 0, 0, 0x42, 0, 0, 0},
         0},
        {"wide text outside the BMP",
         [] { return CBinaryData(L"\U0001F600"); },
         {0x00, 0xF6, 0x01, 0x00},
         0},
        {"empty wide text", [] { return CBinaryData(L""); }, {}, 0},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        const CBinaryData data = tc.make();
        EXPECT_EQ(Bytes(data), tc.bytes);
        EXPECT_EQ(data.GetLength(), tc.bytes.size());
        EXPECT_EQ(data.IsEmpty(), tc.bytes.empty());
        if (tc.bytes.empty()) {
            EXPECT_EQ(data.GetData(), nullptr);
        }
        if (tc.capacity) {
            EXPECT_EQ(data.GetCapacity(), tc.capacity);
        } else if (tc.bytes.empty()) {
            EXPECT_EQ(data.GetCapacity(), 0u);
        }
    }

    // Adopting keeps the caller's array; copying does not.
    unsigned char* adopted = qvtest::NewArray(Pattern(4));
    CBinaryData owner(adopted, 4, true);
    EXPECT_EQ(SharedData(owner), adopted);
    ByteVec source = Pattern(4);
    CBinaryData copy(source.data(), 4, false);
    EXPECT_NE(SharedData(copy), source.data());
}

TEST(BinaryData, AppendAndSetBuffer) {
    const ByteVec ab{0x61, 0x62};
    const ByteVec filler(8190, 0x5A);
    auto plus = [](ByteVec head, const ByteVec& tail) {
        head.insert(head.end(), tail.begin(), tail.end());
        return head;
    };

    enum Start { Empty, AdoptedAb, Copied10 };

    struct Case {
        const char* name;
        Start start;
        std::function<void(CBinaryData&)> change;
        ByteVec bytes;
        unsigned long capacity; // 0: not checked
    };

    const Case cases[] = {
        {"growth doubles the needed size", Copied10,
         [&](CBinaryData& d) { d.Append(filler.data(), 8190); }, plus(Pattern(10), filler), 16400},
        {"fits in place", Copied10, [&](CBinaryData& d) { d.Append(filler.data(), 8182); },
         plus(Pattern(10), ByteVec(8182, 0x5A)), 8192},
        {"adopted grows",
         AdoptedAb,
         [](CBinaryData& d) { d.Append(static_cast<unsigned char>(0x63)); },
         {0x61, 0x62, 0x63},
         6},
        {"append to empty copies", Empty, [&](CBinaryData& d) { d.Append(ab.data(), 2); }, ab,
         8192},
        {"append nothing", Empty, [&](CBinaryData& d) { d.Append(ab.data(), 0); }, {}, 0},
        {"wide character as four bytes",
         AdoptedAb,
         [](CBinaryData& d) { d.Append(L'\u00e9'); },
         {0x61, 0x62, 0xE9, 0x00, 0x00, 0x00},
         0},
        {"wide string as raw units",
         Empty,
         [](CBinaryData& d) {
             d.Append(L"A\u20ac");
             d.Append(std::wstring(L"B"));
         },
         {0x41, 0, 0, 0, 0xAC, 0x20, 0, 0, 0x42, 0, 0, 0},
         0},
        {"another value",
         AdoptedAb,
         [](CBinaryData& d) {
             d.Append(CBinaryData(qvtest::NewArray({0x01, 0x02}), 2, true));
             d.Append(CBinaryData());
         },
         {0x61, 0x62, 0x01, 0x02},
         0},
        {"itself", AdoptedAb, [](CBinaryData& d) { d.Append(d); }, {0x61, 0x62, 0x61, 0x62}, 0},
        {"SetBuffer replaces", Copied10, [&](CBinaryData& d) { d.SetBuffer(ab.data(), 2); }, ab, 0},
        {"SetBuffer with wide text",
         Copied10,
         [](CBinaryData& d) { d.SetBuffer(L"z"); },
         {0x7A, 0, 0, 0},
         0},
        {"SetBuffer with nothing empties",
         Copied10,
         [](CBinaryData& d) { d.SetBuffer(L""); },
         {},
         0},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CBinaryData data = tc.start == Empty       ? CBinaryData()
                           : tc.start == AdoptedAb ? CBinaryData(qvtest::NewArray(ab), 2, true)
                                                   : Copied(Pattern(10));
        tc.change(data);
        EXPECT_EQ(Bytes(data), tc.bytes);
        if (tc.capacity) {
            EXPECT_EQ(data.GetCapacity(), tc.capacity);
        }
    }

    // An unshared value grows where it is.
    CBinaryData grow = Copied(Pattern(10));
    const unsigned char* before = SharedData(grow);
    grow.Append(static_cast<unsigned char>(0xFF));
    EXPECT_EQ(SharedData(grow), before);
}

TEST(BinaryData, CopyOnWrite) {
    struct Case {
        const char* name;
        std::function<void(CBinaryData&)> change;
        ByteVec changed;
    };

    const Case cases[] = {
        {"append byte",
         [](CBinaryData& d) { d.Append(static_cast<unsigned char>(9)); },
         {1, 2, 3, 9}},
        {"append bytes",
         [](CBinaryData& d) {
             const unsigned char more[] = {7, 8};
             d.Append(more, 2);
         },
         {1, 2, 3, 7, 8}},
        {"write through operator[]", [](CBinaryData& d) { d[1] = 0x55; }, {1, 0x55, 3}},
        {"write through GetData", [](CBinaryData& d) { d.GetData()[0] = 0x44; }, {0x44, 2, 3}},
        {"SetBuffer", [](CBinaryData& d) { d.SetBuffer(L"A"); }, {0x41, 0, 0, 0}},
        {"SetAsHexString", [](CBinaryData& d) { d.SetAsHexString(L"FF"); }, {0xFF}},
        {"SetAsBase64", [](CBinaryData& d) { d.SetAsBase64(L"QQ=="); }, {0x41}},
        {"Clear", [](CBinaryData& d) { d.Clear(); }, {}},
        {"ReleaseData", [](CBinaryData& d) { d.ReleaseData(); }, {}},
        {"assign another", [](CBinaryData& d) { d = CBinaryData(L"\x01"); }, {1, 0, 0, 0}},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        const CBinaryData original = Copied({1, 2, 3});
        const unsigned char* originalBytes = original.GetData();
        CBinaryData constructed(original);
        CBinaryData assigned;
        assigned = original;
        for (CBinaryData* copy : {&constructed, &assigned}) {
            SCOPED_TRACE(copy == &constructed ? "copy constructed" : "assigned");
            EXPECT_EQ(SharedData(*copy), originalBytes);
            tc.change(*copy);
            EXPECT_EQ(Bytes(*copy), tc.changed);
            EXPECT_EQ(Bytes(original), (ByteVec{1, 2, 3}));
            EXPECT_EQ(original.GetData(), originalBytes);
        }
    }

    // A private copy made for writing gets the default capacity.
    const CBinaryData small(qvtest::NewArray({1, 2}), 2, true);
    CBinaryData copy(small);
    copy[0] = 5;
    EXPECT_EQ(copy.GetCapacity(), 8192u);
    EXPECT_EQ(small.GetCapacity(), 2u);

    // Moves and self-assignment keep the bytes.
    CBinaryData a = Copied({4, 5});
    CBinaryData& alias = a;
    a = alias;
    EXPECT_EQ(Bytes(a), (ByteVec{4, 5}));
    CBinaryData moved(std::move(a));
    EXPECT_EQ(Bytes(moved), (ByteVec{4, 5}));
    CBinaryData target = Copied({6});
    target = std::move(moved);
    EXPECT_EQ(Bytes(target), (ByteVec{4, 5}));
}

TEST(BinaryData, IndexOutOfRange) {
    struct Case {
        const char* name;
        ByteVec bytes;
        unsigned long index;
        const wchar_t* message;
    };

    const Case cases[] = {
        {"index equal to the length", {1, 2, 3}, 3, L"Index Out of range [3]"},
        {"far beyond", {1, 2, 3}, 1000, L"Index Out of range [1000]"},
        {"empty data", {}, 0, L"Index Out of range [0]"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CBinaryData data = Copied(tc.bytes);
        const CBinaryData& constData = data;
        ExpectThrowMsg<CQvException>([&] { (void)constData[tc.index]; }, tc.message);
        ExpectThrowMsg<CQvException>([&] { (void)data[tc.index]; }, tc.message);
    }
    const CBinaryData data = Copied({1, 2, 3});
    EXPECT_EQ(data[0], 1);
    EXPECT_EQ(data[2], 3);
}

TEST(BinaryData, HexText) {
    struct Case {
        const char* name;
        const wchar_t* text;
        ByteVec bytes;
        const wchar_t* printed;
    };

    const Case cases[] = {
        {"lower case", L"ab01", {0xAB, 0x01}, L"AB01"},
        {"upper case", L"00FF7f", {0x00, 0xFF, 0x7F}, L"00FF7F"},
        {"every digit",
         L"0123456789abcdefABCDEF",
         {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0xAB, 0xCD, 0xEF},
         L"0123456789ABCDEFABCDEF"},
        {"empty", L"", {}, L""},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CBinaryData data = Copied({9, 9, 9});
        data.SetAsHexString(tc.text);
        EXPECT_EQ(Bytes(data), tc.bytes);
        EXPECT_EQ(data.GetAsHexString(), tc.printed);
        // Decoded values are sized exactly.
        EXPECT_EQ(data.GetCapacity(), tc.bytes.size());

        unsigned char sentinel = 0;
        unsigned char* out = &sentinel;
        const unsigned long count = CBinaryData::ConvertToHexData(tc.text, &out);
        EXPECT_EQ(count, tc.bytes.size());
        if (count == 0) {
            EXPECT_EQ(out, nullptr);
        } else {
            EXPECT_EQ(ByteVec(out, out + count), tc.bytes);
        }
        delete[] out;
    }
    const unsigned char raw[] = {0xDE, 0xAD};
    EXPECT_EQ(CBinaryData::GetAsHexString(raw, 2), L"DEAD");
    EXPECT_EQ(CBinaryData::GetAsHexString(raw, 0), L"");
    EXPECT_EQ(CBinaryData::GetAsHexString(nullptr, 5), L"");
}

TEST(BinaryData, HexTextErrors) {
    struct Case {
        const wchar_t* text;
        const wchar_t* message;
    };

    const Case cases[] = {
        {L"abc", L"Invalid length in hex string"},
        {L" ab", L"Invalid length in hex string"},
        {L"a", L"Invalid length in hex string"},
        {L"zz", L"Invalid char in hex string [z]"},
        {L"a ", L"Invalid char in hex string [ ]"},
        {L"0/", L"Invalid char in hex string [/]"},
        {L"0:", L"Invalid char in hex string [:]"},
        {L"0@", L"Invalid char in hex string [@]"},
        {L"0G", L"Invalid char in hex string [G]"},
        {L"0`", L"Invalid char in hex string [`]"},
        {L"0g", L"Invalid char in hex string [g]"},
        {L"ab\u00e9f", L"Invalid char in hex string [\u00e9]"},
        {L"1\u20ac", L"Invalid char in hex string [\u20ac]"},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.text));
        CBinaryData data;
        ExpectThrowMsg<CQvException>([&] { data.SetAsHexString(tc.text); }, tc.message);
        unsigned char* out = nullptr;
        ExpectThrowMsg<CQvException>([&] { CBinaryData::ConvertToHexData(tc.text, &out); },
                                     tc.message);
    }
}

TEST(BinaryData, Base64Text) {
    struct Case {
        const char* name;
        const wchar_t* text;
        ByteVec bytes;
    };

    const Case cases[] = {
        {"three bytes", L"QUJD", {0x41, 0x42, 0x43}},
        {"white space and padding skipped", L" QU\nJD== ", {0x41, 0x42, 0x43}},
        {"padded", L"QQ==", {0x41}},
        {"invalid character empties", L"QUJD!", {}},
        {"empty", L"", {}},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CBinaryData data = Copied({9, 9});
        data.SetAsBase64(tc.text);
        EXPECT_EQ(Bytes(data), tc.bytes);
        EXPECT_EQ(data.GetCapacity(), tc.bytes.size());
    }

    struct Print {
        ByteVec bytes;
        const wchar_t* text;
    };

    const Print prints[] = {
        {{0x41, 0x42, 0x43}, L"QUJD"}, {{0x41}, L"QQ=="}, {{}, L""}, {ByteVec(60, 0), nullptr}};
    for (const Print& p : prints) {
        SCOPED_TRACE(p.bytes.size());
        const std::wstring text = Copied(p.bytes).GetAsBase64();
        if (p.text) {
            EXPECT_EQ(text, p.text);
        } else {
            EXPECT_EQ(text, std::wstring(80, L'A'));
        }
    }
}

TEST(BinaryData, Comparison) {
    struct Case {
        const char* name;
        CBinaryData a, b;
        bool equal;
    };

    const CBinaryData shared = Copied({1, 2});
    const Case cases[] = {
        {"same bytes, different holders", Copied({1, 2}), Copied({1, 2}), true},
        {"shared holder", shared, shared, true},
        {"different length", Copied({1, 2}), Copied({1, 2, 3}), false},
        {"different last byte", Copied({1, 2}), Copied({1, 3}), false},
        {"both empty", CBinaryData(), Copied({}), true},
        {"empty and not", CBinaryData(), Copied({0}), false},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        EXPECT_EQ(tc.a == tc.b, tc.equal);
        EXPECT_EQ(tc.b == tc.a, tc.equal);
        EXPECT_EQ(tc.a != tc.b, !tc.equal);
    }
}

TEST(BinaryDataHolder, ReferenceCounting) {
    ByteVec bytes{1, 2, 3};
    // Release(true) with other users left throws, after dropping its own reference.
    auto* holder = new CBinaryData::CDataHolder(bytes.data(), 3, false);
    EXPECT_EQ(holder->GetRefCount(), 1);
    EXPECT_EQ(holder->GetCapacity(), 8192u);
    EXPECT_NE(holder->GetData(), bytes.data());
    holder->AddRef();
    holder->AddRef();
    ExpectThrowMsg<CQvException>([&] { holder->Release(true); },
                                 L"Failed to release data. [RefCount=2]");
    EXPECT_EQ(holder->GetRefCount(), 2);
    ExpectThrowMsg<CQvException>([&] { holder->Release(true); },
                                 L"Failed to release data. [RefCount=1]");
    EXPECT_EQ(holder->GetRefCount(), 1);
    holder->Release(true); // the last user: freed, no exception

    auto* shared = new CBinaryData::CDataHolder(bytes.data(), 3, false);
    shared->AddRef();
    shared->Release(false);
    EXPECT_EQ(shared->GetRefCount(), 1);
    shared->Release(false);
}

TEST(BinaryDataHolder, AppendAndExclusiveCopy) {
    ByteVec bytes{1, 2, 3};
    auto* holder = new CBinaryData::CDataHolder(qvtest::NewArray(bytes), 3, true);
    EXPECT_EQ(holder->GetCapacity(), 3u);
    holder->AddRef();
    const unsigned char more[] = {4};
    ExpectThrowMsg<CQvException>([&] { holder->Append(more, 1); },
                                 L"Failed to append. [RefCount=2]");
    EXPECT_EQ(holder->GetLength(), 3u);

    CBinaryData::CDataHolder* mine = holder->GetExclusiveCopy();
    ASSERT_NE(mine, holder);
    EXPECT_EQ(holder->GetRefCount(), 1);
    EXPECT_EQ(mine->GetRefCount(), 1);
    EXPECT_EQ(mine->GetCapacity(), 8192u);
    EXPECT_EQ(ByteVec(mine->GetData(), mine->GetData() + mine->GetLength()), bytes);
    EXPECT_NE(mine->GetData(), holder->GetData());

    EXPECT_EQ(mine->GetExclusiveCopy(), mine);
    mine->Append(more, 1);
    EXPECT_EQ(ByteVec(mine->GetData(), mine->GetData() + mine->GetLength()), (ByteVec{1, 2, 3, 4}));

    // An adopted holder grows to twice the needed size.
    holder->Append(more, 1);
    EXPECT_EQ(holder->GetCapacity(), 8u);
    EXPECT_EQ(ByteVec(holder->GetData(), holder->GetData() + holder->GetLength()),
              (ByteVec{1, 2, 3, 4}));
    holder->Release(true);
    mine->Release(true);
}
