#include "types/BigMagnitude.h"

#include <algorithm>

namespace QvXmlLib16::detail {

namespace {

// Below this many limbs schoolbook multiplication beats Karatsuba's bookkeeping.
constexpr size_t kKaratsubaThreshold = 40;

constexpr uint32_t kPow10[kLimbDigits + 1] = {1,      10,      100,      1000,      10000,
                                              100000, 1000000, 10000000, 100000000, 1000000000};

Limbs MulSmall(const Limbs& a, uint32_t m) {
    Limbs out;
    if (m == 0 || a.empty())
        return out;
    out.reserve(a.size() + 1);
    uint64_t carry = 0;
    for (uint32_t limb : a) {
        const uint64_t cur = uint64_t(limb) * m + carry;
        out.push_back(static_cast<uint32_t>(cur % kLimbBase));
        carry = cur / kLimbBase;
    }
    if (carry)
        out.push_back(static_cast<uint32_t>(carry));
    return out;
}

// Divides a in place, returning the remainder.
uint32_t DivSmall(Limbs& a, uint32_t d) {
    uint64_t rem = 0;
    for (size_t i = a.size(); i-- > 0;) {
        const uint64_t cur = rem * kLimbBase + a[i];
        a[i] = static_cast<uint32_t>(cur / d);
        rem = cur % d;
    }
    Trim(a);
    return static_cast<uint32_t>(rem);
}

// acc += a * 10^(9 * shift), growing acc as the carry needs.
void AddShifted(Limbs& acc, const Limbs& a, size_t shift) {
    if (acc.size() < a.size() + shift + 1)
        acc.resize(a.size() + shift + 1, 0);
    uint32_t carry = 0;
    size_t i = 0;
    for (; i < a.size() || carry; ++i) {
        if (shift + i == acc.size())
            acc.push_back(0);
        uint32_t sum = acc[shift + i] + carry + (i < a.size() ? a[i] : 0);
        carry = sum >= kLimbBase;
        if (carry)
            sum -= kLimbBase;
        acc[shift + i] = sum;
    }
}

Limbs MulSchool(const Limbs& a, const Limbs& b) {
    Limbs out(a.size() + b.size(), 0);
    for (size_t i = 0; i < a.size(); ++i) {
        uint64_t carry = 0;
        for (size_t j = 0; j < b.size(); ++j) {
            const uint64_t cur = out[i + j] + uint64_t(a[i]) * b[j] + carry;
            out[i + j] = static_cast<uint32_t>(cur % kLimbBase);
            carry = cur / kLimbBase;
        }
        out[i + b.size()] = static_cast<uint32_t>(carry);
    }
    Trim(out);
    return out;
}

Limbs Slice(const Limbs& a, size_t from, size_t to) {
    Limbs out(a.begin() + std::min(from, a.size()), a.begin() + std::min(to, a.size()));
    Trim(out);
    return out;
}

// a.size() >= b.size() > a.size() / 2.
Limbs MulKaratsuba(const Limbs& a, const Limbs& b) {
    const size_t half = a.size() / 2;
    const Limbs a0 = Slice(a, 0, half), a1 = Slice(a, half, a.size());
    const Limbs b0 = Slice(b, 0, half), b1 = Slice(b, half, b.size());
    const Limbs z0 = MulMag(a0, b0);
    const Limbs z2 = MulMag(a1, b1);
    const Limbs z1 = SubMag(SubMag(MulMag(AddMag(a0, a1), AddMag(b0, b1)), z0), z2);
    Limbs out(a.size() + b.size() + 1, 0);
    AddShifted(out, z0, 0);
    AddShifted(out, z1, half);
    AddShifted(out, z2, 2 * half);
    Trim(out);
    return out;
}

constexpr char kDigitPairs[] = "00010203040506070809101112131415161718192021222324252627282930"
                               "31323334353637383940414243444546474849505152535455565758596061"
                               "62636465666768697071727374757677787980818283848586878889909192"
                               "939495969798999";

wchar_t* PutPair(wchar_t* p, uint32_t pair) {
    *--p = static_cast<wchar_t>(kDigitPairs[2 * pair + 1]);
    *--p = static_cast<wchar_t>(kDigitPairs[2 * pair]);
    return p;
}

} // namespace

void Trim(Limbs& a) {
    while (!a.empty() && a.back() == 0)
        a.pop_back();
}

int CompareMag(const Limbs& a, const Limbs& b) {
    if (a.size() != b.size())
        return a.size() < b.size() ? -1 : 1;
    for (size_t i = a.size(); i-- > 0;)
        if (a[i] != b[i])
            return a[i] < b[i] ? -1 : 1;
    return 0;
}

Limbs AddMag(const Limbs& a, const Limbs& b) {
    Limbs out = a.size() >= b.size() ? a : b;
    AddShifted(out, a.size() >= b.size() ? b : a, 0);
    Trim(out);
    return out;
}

Limbs SubMag(const Limbs& a, const Limbs& b) {
    Limbs out = a;
    int64_t borrow = 0;
    for (size_t i = 0; i < out.size() && (i < b.size() || borrow); ++i) {
        int64_t cur = int64_t(out[i]) - borrow - (i < b.size() ? b[i] : 0);
        borrow = cur < 0;
        if (borrow)
            cur += kLimbBase;
        out[i] = static_cast<uint32_t>(cur);
    }
    Trim(out);
    return out;
}

Limbs MulMag(const Limbs& a, const Limbs& b) {
    if (a.empty() || b.empty())
        return Limbs();
    if (a.size() < b.size())
        return MulMag(b, a);
    if (b.size() < kKaratsubaThreshold)
        return MulSchool(a, b);
    if (b.size() > a.size() / 2)
        return MulKaratsuba(a, b);
    // Unbalanced: cut a into pieces the size of b so every product is balanced.
    Limbs out(a.size() + b.size() + 1, 0);
    for (size_t from = 0; from < a.size(); from += b.size())
        AddShifted(out, MulMag(Slice(a, from, from + b.size()), b), from);
    Trim(out);
    return out;
}

// Knuth's algorithm D in base 10^9: scale both so the divisor's top limb is at least base / 2,
// estimate each quotient limb from the top two limbs, correct it at most twice, subtract.
void DivModMag(const Limbs& a, const Limbs& b, Limbs& quotient, Limbs& remainder) {
    if (CompareMag(a, b) < 0) {
        quotient.clear();
        remainder = a;
        return;
    }
    if (b.size() == 1) {
        quotient = a;
        const uint32_t rem = DivSmall(quotient, b[0]);
        remainder = rem ? Limbs{rem} : Limbs();
        return;
    }
    const uint32_t scale = static_cast<uint32_t>(kLimbBase / (uint64_t(b.back()) + 1));
    Limbs u = MulSmall(a, scale);
    const Limbs v = MulSmall(b, scale);
    u.resize(a.size() + 1, 0);
    const size_t n = v.size(), m = a.size() - n;
    quotient.assign(m + 1, 0);
    for (size_t j = m + 1; j-- > 0;) {
        const uint64_t top = uint64_t(u[j + n]) * kLimbBase + u[j + n - 1];
        uint64_t qhat = top / v[n - 1];
        uint64_t rhat = top % v[n - 1];
        if (qhat >= kLimbBase) {
            qhat = kLimbBase - 1;
            rhat = top - qhat * v[n - 1];
        }
        while (rhat < kLimbBase && qhat * v[n - 2] > rhat * kLimbBase + u[j + n - 2]) {
            --qhat;
            rhat += v[n - 1];
        }
        int64_t borrow = 0;
        uint64_t carry = 0;
        for (size_t i = 0; i <= n; ++i) {
            const uint64_t product = i < n ? qhat * v[i] + carry : carry;
            carry = product / kLimbBase;
            int64_t cur = int64_t(u[i + j]) - int64_t(product % kLimbBase) - borrow;
            borrow = cur < 0;
            if (borrow)
                cur += kLimbBase;
            u[i + j] = static_cast<uint32_t>(cur);
        }
        if (borrow) { // qhat was one too large: add v back
            --qhat;
            uint32_t c = 0;
            for (size_t i = 0; i < n; ++i) {
                uint32_t sum = u[i + j] + v[i] + c;
                c = sum >= kLimbBase;
                u[i + j] = c ? sum - kLimbBase : sum;
            }
            u[j + n] = static_cast<uint32_t>((uint64_t(u[j + n]) + c) % kLimbBase);
        }
        quotient[j] = static_cast<uint32_t>(qhat);
    }
    Trim(quotient);
    u.resize(n);
    Trim(u);
    DivSmall(u, scale);
    remainder = u;
}

Limbs ShiftLeftDecimal(const Limbs& a, size_t n) {
    if (a.empty())
        return a;
    Limbs out = MulSmall(a, kPow10[n % kLimbDigits]);
    out.insert(out.begin(), n / kLimbDigits, 0);
    return out;
}

Limbs ShiftRightDecimal(const Limbs& a, size_t n) {
    if (n / kLimbDigits >= a.size())
        return Limbs();
    Limbs out(a.begin() + static_cast<std::ptrdiff_t>(n / kLimbDigits), a.end());
    DivSmall(out, kPow10[n % kLimbDigits]);
    return out;
}

size_t TrailingDecimalZeros(const Limbs& a) {
    size_t zeros = 0;
    for (uint32_t limb : a) {
        if (limb == 0) {
            zeros += kLimbDigits;
            continue;
        }
        while (limb % 10 == 0) {
            limb /= 10;
            ++zeros;
        }
        return zeros;
    }
    return 0;
}

size_t DecimalDigitCount(const Limbs& a) {
    if (a.empty())
        return 0;
    size_t digits = (a.size() - 1) * kLimbDigits;
    for (uint32_t top = a.back(); top; top /= 10)
        ++digits;
    return digits;
}

Limbs MagFromDigits(const wchar_t* first, const wchar_t* last) {
    Limbs out;
    out.reserve(static_cast<size_t>(last - first) / kLimbDigits + 1);
    for (const wchar_t* end = last; end > first;) {
        const wchar_t* begin = end - std::min<std::ptrdiff_t>(kLimbDigits, end - first);
        uint32_t limb = 0;
        for (const wchar_t* p = begin; p < end; ++p)
            limb = limb * 10 + static_cast<uint32_t>(*p - L'0');
        out.push_back(limb);
        end = begin;
    }
    Trim(out);
    return out;
}

Limbs MagFromUnsigned(unsigned long long value) {
    Limbs out;
    for (; value; value /= kLimbBase)
        out.push_back(static_cast<uint32_t>(value % kLimbBase));
    return out;
}

std::wstring MagToString(const Limbs& a) {
    std::wstring out(std::max<size_t>(DecimalDigitCount(a), 1), L'0');
    MagDigitsBefore(a, out.data() + out.size());
    return out;
}

// Two digits per division; a limb below the top one always gives nine, zeros included.
wchar_t* MagDigitsBefore(const Limbs& a, wchar_t* end) {
    wchar_t* p = end;
    if (a.empty()) {
        *--p = L'0';
        return p;
    }
    for (size_t i = 0; i + 1 < a.size(); ++i) {
        uint32_t limb = a[i];
        for (int k = 0; k < 4; ++k, limb /= 100)
            p = PutPair(p, limb % 100);
        *--p = static_cast<wchar_t>(L'0' + limb);
    }
    uint32_t top = a.back();
    for (; top >= 100; top /= 100)
        p = PutPair(p, top % 100);
    if (top >= 10)
        return PutPair(p, top);
    *--p = static_cast<wchar_t>(L'0' + top);
    return p;
}

} // namespace QvXmlLib16::detail
