#include "common/TestUtils.h"

#include <functional>
#include <utility>

using namespace QvXmlLib16;
using qvtest::Bytes;
using qvtest::ExpectThrowMsg;
using ByteVec = std::vector<unsigned char>;
using Byte = unsigned char;

namespace {

ByteVec Pattern(size_t n) {
    ByteVec bytes(n);
    for (size_t i = 0; i < n; ++i)
        bytes[i] = static_cast<Byte>(i * 7 + 1);
    return bytes;
}

ByteVec Concat(ByteVec head, const ByteVec& tail) {
    head.insert(head.end(), tail.begin(), tail.end());
    return head;
}

// The source dies at once, so the value must own a copy.
CBinaryData Copied(const ByteVec& bytes) {
    ByteVec source = bytes;
    return CBinaryData(source.data(), static_cast<unsigned long>(source.size()), false);
}

CBinaryData Adopted(const ByteVec& bytes) {
    return CBinaryData(qvtest::NewArray(bytes), static_cast<unsigned long>(bytes.size()), true);
}

ByteVec HolderBytes(const CBinaryData::CDataHolder* holder) {
    return ByteVec(holder->GetData(), holder->GetData() + holder->GetLength());
}

} // namespace

// A copy starts at 8192 bytes of room, or twice its length past 4096; an adopted array is
// kept as it is.
TEST(BinaryData, ConstructionAndCapacity) {
    struct Case {
        const char* name;
        std::function<CBinaryData()> make;
        ByteVec bytes;
        unsigned long capacity; // 0: not checked unless empty
    };

    const Case cases[] = {
        {"default", [] { return CBinaryData(); }, {}, 0},
        {"4096 bytes copied", [] { return Copied(Pattern(4096)); }, Pattern(4096), 8192},
        {"4097 bytes copied", [] { return Copied(Pattern(4097)); }, Pattern(4097), 8194},
        {"ten bytes adopted", [] { return Adopted(Pattern(10)); }, Pattern(10), 10},
        {"length zero is empty", [] { return CBinaryData(Pattern(1).data(), 0, false); }, {}, 0},
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
            EXPECT_EQ(data.GetCapacity(), 0u);
        } else if (tc.capacity) {
            EXPECT_EQ(data.GetCapacity(), tc.capacity);
        }
    }

    // Adopting keeps the caller's array; copying does not.
    unsigned char* adopted = qvtest::NewArray(Pattern(4));
    const CBinaryData owner(adopted, 4, true);
    EXPECT_EQ(owner.GetData(), adopted);
    ByteVec source = Pattern(4);
    const CBinaryData copy(source.data(), 4, false);
    EXPECT_NE(copy.GetData(), source.data());
}

TEST(BinaryData, AppendAndSetBuffer) {
    const ByteVec ab{0x61, 0x62};
    const ByteVec filler(8190, 0x5A);

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
         [&](auto& d) { d.Append(filler.data(), 8190); }, Concat(Pattern(10), filler), 16400},
        {"fits in place", Copied10, [&](auto& d) { d.Append(filler.data(), 8182); },
         Concat(Pattern(10), ByteVec(8182, 0x5A)), 8192},
        {"adopted grows", AdoptedAb, [](auto& d) { d.Append(Byte(0x63)); }, {0x61, 0x62, 0x63}, 6},
        {"append to empty copies", Empty, [&](auto& d) { d.Append(ab.data(), 2); }, ab, 8192},
        {"append nothing", Empty, [&](auto& d) { d.Append(ab.data(), 0); }, {}, 0},
        {"wide character as four bytes",
         AdoptedAb,
         [](auto& d) { d.Append(L'\u00e9'); },
         {0x61, 0x62, 0xE9, 0, 0, 0},
         0},
        {"wide string as raw units",
         Empty,
         [](auto& d) { d.Append(L"A\u20ac"), d.Append(std::wstring(L"B")); },
         {0x41, 0, 0, 0, 0xAC, 0x20, 0, 0, 0x42, 0, 0, 0},
         0},
        {"another value",
         AdoptedAb,
         [](auto& d) {
             d.Append(Adopted({0x01, 0x02})), d.Append(CBinaryData());
         },
         {0x61, 0x62, 0x01, 0x02},
         0},
        {"itself", AdoptedAb, [](auto& d) { d.Append(d); }, {0x61, 0x62, 0x61, 0x62}, 0},
        {"SetBuffer replaces", Copied10, [&](auto& d) { d.SetBuffer(ab.data(), 2); }, ab, 0},
        {"SetBuffer with wide text",
         Copied10,
         [](auto& d) { d.SetBuffer(L"z"); },
         {0x7A, 0, 0, 0},
         0},
        {"SetBuffer with nothing empties", Copied10, [](auto& d) { d.SetBuffer(L""); }, {}, 0},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CBinaryData data = tc.start == Empty       ? CBinaryData()
                           : tc.start == AdoptedAb ? Adopted(ab)
                                                   : Copied(Pattern(10));
        tc.change(data);
        EXPECT_EQ(Bytes(data), tc.bytes);
        if (tc.capacity) {
            EXPECT_EQ(data.GetCapacity(), tc.capacity);
        }
    }

    // An unshared value grows where it is.
    CBinaryData grow = Copied(Pattern(10));
    const unsigned char* before = grow.GetData();
    grow.Append(Byte(0xFF));
    EXPECT_EQ(static_cast<const CBinaryData&>(grow).GetData(), before);
}

TEST(BinaryData, CopyOnWrite) {
    struct Case {
        const char* name;
        std::function<void(CBinaryData&)> change;
        ByteVec changed;
    };

    const Case cases[] = {
        {"append byte", [](auto& d) { d.Append(Byte(9)); }, {1, 2, 3, 9}},
        {"append bytes",
         [](auto& d) {
             d.Append(ByteVec{7, 8}.data(), 2);
         },
         {1, 2, 3, 7, 8}},
        {"write through operator[]", [](auto& d) { d[1] = 0x55; }, {1, 0x55, 3}},
        {"write through GetData", [](auto& d) { d.GetData()[0] = 0x44; }, {0x44, 2, 3}},
        {"SetBuffer", [](auto& d) { d.SetBuffer(L"A"); }, {0x41, 0, 0, 0}},
        {"SetAsHexString", [](auto& d) { d.SetAsHexString(L"FF"); }, {0xFF}},
        {"SetAsBase64", [](auto& d) { d.SetAsBase64(L"QQ=="); }, {0x41}},
        {"Clear", [](auto& d) { d.Clear(); }, {}},
        {"ReleaseData", [](auto& d) { d.ReleaseData(); }, {}},
        {"assign another", [](auto& d) { d = CBinaryData(L"\x01"); }, {1, 0, 0, 0}},
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
            EXPECT_EQ(static_cast<const CBinaryData&>(*copy).GetData(), originalBytes);
            tc.change(*copy);
            EXPECT_EQ(Bytes(*copy), tc.changed);
            EXPECT_EQ(Bytes(original), (ByteVec{1, 2, 3}));
            EXPECT_EQ(original.GetData(), originalBytes);
        }
    }

    // A private copy made for writing gets the default capacity.
    const CBinaryData small = Adopted({1, 2});
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
    for (const auto& [bytes, index] : {std::pair{ByteVec{1, 2, 3}, 3ul}, {ByteVec{}, 0ul}}) {
        SCOPED_TRACE(index);
        CBinaryData data = Copied(bytes);
        const CBinaryData& constData = data;
        const std::wstring message = L"Index Out of range [" + std::to_wstring(index) + L"]";
        ExpectThrowMsg<CQvException>([&] { (void)constData[index]; }, message);
        ExpectThrowMsg<CQvException>([&] { (void)data[index]; }, message);
    }
    const CBinaryData data = Copied({1, 2, 3});
    EXPECT_EQ(data[0], 1);
    EXPECT_EQ(data[2], 3);
}

TEST(BinaryData, HexText) {
    struct Case {
        const wchar_t* text;
        ByteVec bytes;
        const wchar_t* printed;
    };

    const Case cases[] = {
        {L"00FF7f", {0x00, 0xFF, 0x7F}, L"00FF7F"},
        {L"0123456789abcdefABCDEF",
         {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0xAB, 0xCD, 0xEF},
         L"0123456789ABCDEFABCDEF"},
        {L"", {}, L""},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.text));
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
    std::vector<std::pair<std::wstring, std::wstring>> cases;
    for (const wchar_t* text : {L"abc", L" ab", L"a"})
        cases.emplace_back(text, L"Invalid length in hex string");
    // Each neighbour of the digit ranges, white space and characters past ASCII.
    for (const wchar_t bad : std::wstring(L"/:@G`g \u00e9\u20ac"))
        cases.emplace_back(std::wstring(L"0") + bad,
                           L"Invalid char in hex string [" + std::wstring(1, bad) + L"]");
    cases.emplace_back(L"zz", L"Invalid char in hex string [z]");
    for (const auto& [text, message] : cases) {
        SCOPED_TRACE(qvtest::Narrow(text));
        CBinaryData data;
        ExpectThrowMsg<CQvException>([&] { data.SetAsHexString(text.c_str()); }, message);
        unsigned char* out = nullptr;
        ExpectThrowMsg<CQvException>([&] { CBinaryData::ConvertToHexData(text.c_str(), &out); },
                                     message);
    }
}

TEST(BinaryData, Base64Text) {
    struct Case {
        const wchar_t* text;
        ByteVec bytes;
    };

    // White space and padding are skipped; an invalid character empties the value.
    const Case cases[] = {{L"QUJD", {0x41, 0x42, 0x43}},
                          {L" QU\nJD== ", {0x41, 0x42, 0x43}},
                          {L"QQ==", {0x41}},
                          {L"QUJD!", {}},
                          {L"", {}}};
    for (const Case& tc : cases) {
        SCOPED_TRACE(qvtest::Narrow(tc.text));
        CBinaryData data = Copied({9, 9});
        data.SetAsBase64(tc.text);
        EXPECT_EQ(Bytes(data), tc.bytes);
        EXPECT_EQ(data.GetCapacity(), tc.bytes.size());
    }
    EXPECT_EQ(Copied({0x41, 0x42, 0x43}).GetAsBase64(), L"QUJD");
    EXPECT_EQ(Copied({0x41}).GetAsBase64(), L"QQ==");
    EXPECT_EQ(Copied({}).GetAsBase64(), L"");
    EXPECT_EQ(Copied(ByteVec(60, 0)).GetAsBase64(), std::wstring(80, L'A')); // no line breaks
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
    for (const int left : {2, 1}) {
        ExpectThrowMsg<CQvException>([&] { holder->Release(true); },
                                     L"Failed to release data. [RefCount=" + std::to_wstring(left)
                                         + L"]");
        EXPECT_EQ(holder->GetRefCount(), left);
    }
    holder->Release(true); // the last user: freed, no exception

    auto* shared = new CBinaryData::CDataHolder(bytes.data(), 3, false);
    shared->AddRef();
    shared->Release(false);
    EXPECT_EQ(shared->GetRefCount(), 1);
    shared->Release(false);
}

TEST(BinaryDataHolder, AppendAndExclusiveCopy) {
    const ByteVec bytes{1, 2, 3};
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
    EXPECT_EQ(HolderBytes(mine), bytes);
    EXPECT_NE(mine->GetData(), holder->GetData());

    EXPECT_EQ(mine->GetExclusiveCopy(), mine);
    mine->Append(more, 1);
    EXPECT_EQ(HolderBytes(mine), (ByteVec{1, 2, 3, 4}));

    // An adopted holder grows to twice the needed size.
    holder->Append(more, 1);
    EXPECT_EQ(holder->GetCapacity(), 8u);
    EXPECT_EQ(HolderBytes(holder), (ByteVec{1, 2, 3, 4}));
    holder->Release(true);
    mine->Release(true);
}
