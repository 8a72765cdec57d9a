#pragma once

#include <QvXmlLib16/Export.h>
#include <QvXmlLib16/InstanceMonitor.h>

#include <memory>

namespace QvXmlLib16 {

class CXmlDocument;

// Turns the XML text in a document's input buffer into its element tree. Parse errors throw
// CQvException "<parser's message> at line <n>"; what was built before the error stays.
class QVXML_API CExpatReader : public CInstanceMonitor {
public:
    explicit CExpatReader(CXmlDocument& document);
    ~CExpatReader();
    CExpatReader(const CExpatReader&) = delete;
    CExpatReader& operator=(const CExpatReader&) = delete;

    void CreateParser();
    void Parse(bool freeParser);
    void Cleanup();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace QvXmlLib16
