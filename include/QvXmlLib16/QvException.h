#pragma once

#include <QvXmlLib16/Export.h>

#include <memory>
#include <string>
#include <vector>

namespace QvXmlLib16 {

// Root of every failure the library reports. Thrown by value, caught by reference.
class QVXML_API CQvException {
public:
    CQvException();
    explicit CQvException(std::wstring message);
    CQvException(std::wstring message, const CQvException& inner);
    CQvException(std::wstring message, std::wstring path);
    CQvException(std::wstring message, std::wstring path, const CQvException& inner);
    CQvException(const CQvException& other);
    virtual ~CQvException();

    virtual CQvException* Clone() const;

    // Partial on purpose: copies the message and a clone of the other's inner exception, not the
    // path. The inner exception held before stays alive until this exception is destroyed, so a
    // pointer taken from GetInnerException() never dangles.
    CQvException& operator=(const CQvException& other);

    std::wstring GetMessage() const { return m_message; }

    std::wstring GetPath() const { return m_path; }

    const CQvException* GetInnerException() const { return m_inner; }

    // This message followed by those of the whole inner chain, one per line group.
    std::wstring GetFullMessage() const;

private:
    std::wstring m_message;
    std::wstring m_path;
    CQvException* m_inner = nullptr;
    std::vector<std::unique_ptr<CQvException>> m_replacedInners;
};

class QVXML_API CQvValidationException : public CQvException {
public:
    CQvValidationException();
    CQvValidationException(const CQvException& other);
    CQvValidationException(std::wstring message, std::wstring path);
    CQvValidationException(std::wstring message, std::wstring path, const CQvException& inner);
    CQvValidationException(const CQvValidationException& other);
    CQvValidationException& operator=(const CQvValidationException& other) = default;
    ~CQvValidationException() override;
    CQvValidationException* Clone() const override;

    // Free-form detail for applications; the library itself never sets it.
    const std::wstring& GetDetail() const { return m_detail; }

    void SetDetail(std::wstring detail) { m_detail = std::move(detail); }

protected:
    // For CQvInvalidValueException, whose constructors take no path.
    struct NoPath {};

    CQvValidationException(NoPath, std::wstring message);
    CQvValidationException(NoPath, std::wstring message, const CQvException& inner);

private:
    std::wstring m_detail;
};

class QVXML_API CQvInvalidValueException : public CQvValidationException {
public:
    CQvInvalidValueException();
    CQvInvalidValueException(const CQvException& other);
    explicit CQvInvalidValueException(std::wstring message);
    CQvInvalidValueException(std::wstring message, const CQvException& inner);
    CQvInvalidValueException(const CQvInvalidValueException& other);
    CQvInvalidValueException& operator=(const CQvInvalidValueException& other) = default;
    ~CQvInvalidValueException() override;
    CQvInvalidValueException* Clone() const override;
};

class QVXML_API CQvInvalidNamespaceException : public CQvValidationException {
public:
    CQvInvalidNamespaceException();
    CQvInvalidNamespaceException(const CQvException& other);
    CQvInvalidNamespaceException(std::wstring message, std::wstring path);
    CQvInvalidNamespaceException(std::wstring message, std::wstring path,
                                 const CQvException& inner);
    CQvInvalidNamespaceException(const CQvInvalidNamespaceException& other);
    CQvInvalidNamespaceException& operator=(const CQvInvalidNamespaceException& other) = default;
    ~CQvInvalidNamespaceException() override;
    CQvInvalidNamespaceException* Clone() const override;
};

// The three pathless families differ only in their dynamic type.
class QVXML_API CQvInvalidStateException : public CQvException {
public:
    CQvInvalidStateException();
    CQvInvalidStateException(const CQvException& other);
    explicit CQvInvalidStateException(std::wstring message);
    CQvInvalidStateException(std::wstring message, const CQvException& inner);
    CQvInvalidStateException(const CQvInvalidStateException& other);
    CQvInvalidStateException& operator=(const CQvInvalidStateException& other) = default;
    ~CQvInvalidStateException() override;
    CQvInvalidStateException* Clone() const override;
};

class QVXML_API CQvInvalidParamException : public CQvException {
public:
    CQvInvalidParamException();
    CQvInvalidParamException(const CQvException& other);
    explicit CQvInvalidParamException(std::wstring message);
    CQvInvalidParamException(std::wstring message, const CQvException& inner);
    CQvInvalidParamException(const CQvInvalidParamException& other);
    CQvInvalidParamException& operator=(const CQvInvalidParamException& other) = default;
    ~CQvInvalidParamException() override;
    CQvInvalidParamException* Clone() const override;
};

class QVXML_API CQvOverFlowException : public CQvException {
public:
    CQvOverFlowException();
    CQvOverFlowException(const CQvException& other);
    explicit CQvOverFlowException(std::wstring message);
    CQvOverFlowException(std::wstring message, const CQvException& inner);
    CQvOverFlowException(const CQvOverFlowException& other);
    CQvOverFlowException& operator=(const CQvOverFlowException& other) = default;
    ~CQvOverFlowException() override;
    CQvOverFlowException* Clone() const override;
};

} // namespace QvXmlLib16
