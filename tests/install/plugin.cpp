// A plugin that uses the library, loaded at run time by loader.cpp: the library then arrives
// with dlopen, after the program started, and its thread-local state must still find room.
#include <QvXmlLib16/QvXmlLib16.h>

using namespace QvXmlLib16;

extern "C" int RunPlugin() {
    CXmlDocument doc;
    doc.LoadXml("<r a='value'>text<c>child</c></r>");
    const CXmlElement* root = doc.GetDocumentElement();
    if (root->GetText() != L"text" || root->GetAttributes()[0]->GetValue() != L"value")
        return 1;
    QvVariant value;
    value.FromString(root->GetFirstElement()->GetText(), ItemType_string,
                     CWhitespaceUtils::WhitespaceRule_Collapse);
    return value.GetString() == L"child" ? 0 : 2;
}
