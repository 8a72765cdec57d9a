// Uses the installed library through its umbrella header only.
#include <QvXmlLib16/QvXmlLib16.h>

#include <cstdio>

using namespace QvXmlLib16;

int main() {
    CBinaryData data;
    data.SetAsHexString(L"48656C6C6F");
    const std::wstring base64 = data.GetAsBase64();
    try {
        data.SetAsHexString(L"abc");
        return 1;
    } catch (const CQvException& e) {
        if (e.GetMessage() != L"Invalid length in hex string")
            return 2;
    }
    if (base64 != L"SGVsbG8=")
        return 3;
    std::printf("consumer ok: %ls\n", FormatString(L"%ls has %d bytes", base64.c_str(), 5).c_str());
    return 0;
}
