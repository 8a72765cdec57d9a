#include <QvXmlLib16/QvException.h>

#include <utility>

namespace QvXmlLib16 {

namespace {

std::wstring JoinPath(std::wstring message, const std::wstring& path) {
    if (!path.empty()) {
        message += L"\nPath: ";
        message += path;
    }
    return message;
}

CQvException* CloneOrNull(const CQvException* e) {
    return e ? e->Clone() : nullptr;
}

} // namespace

CQvException::CQvException() = default;

CQvException::CQvException(std::wstring message) : m_message(std::move(message)) {}

CQvException::CQvException(std::wstring message, const CQvException& inner)
    : m_message(std::move(message)),
      m_inner(inner.Clone()) {}

CQvException::CQvException(std::wstring message, std::wstring path)
    : m_message(JoinPath(std::move(message), path)),
      m_path(std::move(path)) {}

CQvException::CQvException(std::wstring message, std::wstring path, const CQvException& inner)
    : m_message(JoinPath(std::move(message), path)),
      m_path(std::move(path)),
      m_inner(inner.Clone()) {}

CQvException::CQvException(const CQvException& other)
    : m_message(other.m_message),
      m_path(other.m_path),
      m_inner(CloneOrNull(other.m_inner)) {}

CQvException::~CQvException() {
    delete m_inner;
}

CQvException* CQvException::Clone() const {
    return new CQvException(*this);
}

CQvException& CQvException::operator=(const CQvException& other) {
    CQvException* replacement = CloneOrNull(other.m_inner);
    m_message = other.m_message;
    if (m_inner)
        m_replacedInners.emplace_back(m_inner);
    m_inner = replacement;
    return *this;
}

std::wstring CQvException::GetFullMessage() const {
    // A loop, not recursion: chains built by deep documents can be long.
    std::wstring text = m_message;
    for (const CQvException* e = m_inner; e; e = e->m_inner) {
        text += L'\n';
        text += e->m_message;
    }
    return text;
}

// ---- validation family ----

CQvValidationException::CQvValidationException() = default;

CQvValidationException::CQvValidationException(const CQvException& other) : CQvException(other) {}

CQvValidationException::CQvValidationException(std::wstring message, std::wstring path)
    : CQvException(std::move(message), std::move(path)) {}

CQvValidationException::CQvValidationException(std::wstring message, std::wstring path,
                                               const CQvException& inner)
    : CQvException(std::move(message), std::move(path), inner) {}

CQvValidationException::CQvValidationException(NoPath, std::wstring message)
    : CQvException(std::move(message)) {}

CQvValidationException::CQvValidationException(NoPath, std::wstring message,
                                               const CQvException& inner)
    : CQvException(std::move(message), inner) {}

CQvValidationException::CQvValidationException(const CQvValidationException& other) = default;
CQvValidationException::~CQvValidationException() = default;

CQvValidationException* CQvValidationException::Clone() const {
    return new CQvValidationException(*this);
}

CQvInvalidValueException::CQvInvalidValueException() = default;

CQvInvalidValueException::CQvInvalidValueException(const CQvException& other)
    : CQvValidationException(other) {}

CQvInvalidValueException::CQvInvalidValueException(std::wstring message)
    : CQvValidationException(NoPath{}, std::move(message)) {}

CQvInvalidValueException::CQvInvalidValueException(std::wstring message, const CQvException& inner)
    : CQvValidationException(NoPath{}, std::move(message), inner) {}

CQvInvalidValueException::CQvInvalidValueException(const CQvInvalidValueException& other) = default;
CQvInvalidValueException::~CQvInvalidValueException() = default;

CQvInvalidValueException* CQvInvalidValueException::Clone() const {
    return new CQvInvalidValueException(*this);
}

CQvInvalidNamespaceException::CQvInvalidNamespaceException() = default;

CQvInvalidNamespaceException::CQvInvalidNamespaceException(const CQvException& other)
    : CQvValidationException(other) {}

CQvInvalidNamespaceException::CQvInvalidNamespaceException(std::wstring message, std::wstring path)
    : CQvValidationException(std::move(message), std::move(path)) {}

CQvInvalidNamespaceException::CQvInvalidNamespaceException(std::wstring message, std::wstring path,
                                                           const CQvException& inner)
    : CQvValidationException(std::move(message), std::move(path), inner) {}

CQvInvalidNamespaceException::CQvInvalidNamespaceException(
    const CQvInvalidNamespaceException& other) = default;
CQvInvalidNamespaceException::~CQvInvalidNamespaceException() = default;

CQvInvalidNamespaceException* CQvInvalidNamespaceException::Clone() const {
    return new CQvInvalidNamespaceException(*this);
}

// ---- pathless families ----

CQvInvalidStateException::CQvInvalidStateException() = default;

CQvInvalidStateException::CQvInvalidStateException(const CQvException& other)
    : CQvException(other) {}

CQvInvalidStateException::CQvInvalidStateException(std::wstring message)
    : CQvException(std::move(message)) {}

CQvInvalidStateException::CQvInvalidStateException(std::wstring message, const CQvException& inner)
    : CQvException(std::move(message), inner) {}

CQvInvalidStateException::CQvInvalidStateException(const CQvInvalidStateException& other) = default;
CQvInvalidStateException::~CQvInvalidStateException() = default;

CQvInvalidStateException* CQvInvalidStateException::Clone() const {
    return new CQvInvalidStateException(*this);
}

CQvInvalidParamException::CQvInvalidParamException() = default;

CQvInvalidParamException::CQvInvalidParamException(const CQvException& other)
    : CQvException(other) {}

CQvInvalidParamException::CQvInvalidParamException(std::wstring message)
    : CQvException(std::move(message)) {}

CQvInvalidParamException::CQvInvalidParamException(std::wstring message, const CQvException& inner)
    : CQvException(std::move(message), inner) {}

CQvInvalidParamException::CQvInvalidParamException(const CQvInvalidParamException& other) = default;
CQvInvalidParamException::~CQvInvalidParamException() = default;

CQvInvalidParamException* CQvInvalidParamException::Clone() const {
    return new CQvInvalidParamException(*this);
}

CQvOverFlowException::CQvOverFlowException() = default;

CQvOverFlowException::CQvOverFlowException(const CQvException& other) : CQvException(other) {}

CQvOverFlowException::CQvOverFlowException(std::wstring message)
    : CQvException(std::move(message)) {}

CQvOverFlowException::CQvOverFlowException(std::wstring message, const CQvException& inner)
    : CQvException(std::move(message), inner) {}

CQvOverFlowException::CQvOverFlowException(const CQvOverFlowException& other) = default;
CQvOverFlowException::~CQvOverFlowException() = default;

CQvOverFlowException* CQvOverFlowException::Clone() const {
    return new CQvOverFlowException(*this);
}

} // namespace QvXmlLib16
