// String elements over shared bodies.
#include "objects/String.h"

#include <algorithm>
#include <cstring>

#include "objects/SimpleElements.h"
#include "objects/Work.h"

CStringElement::CStringElement(std::string_view bytes)
    : CElement(ET_STRING), m_Body(AdoptBody(std::make_unique<CStringBody>(std::string(bytes)))) {
    CountWorkOnBytes(bytes.size());
}

CStringElement::CStringElement(std::int32_t length)
    : CElement(ET_STRING),
      m_Body(AdoptBody(std::make_unique<CStringBody>(std::string(static_cast<size_t>(std::max(length, 0)), '0')))) {
    CountWorkOnBytes(static_cast<size_t>(std::max(length, 0)));
}

std::int32_t CStringElement::GetLength() const noexcept {
    const CStringBody* body = GetBody();
    if (!body) return 0;
    return m_bView ? m_nLength : static_cast<std::int32_t>(body->Contents().size());
}

std::string_view CStringElement::Bytes() const noexcept {
    const CStringBody* body = GetBody();
    if (!body) return {};
    const std::string_view whole = body->Contents();
    const std::string_view bytes = whole.substr(std::min(Start(), whole.size()), static_cast<size_t>(GetLength()));
    CountWorkOnBytes(bytes.size());  // whoever asks for them goes over them
    return bytes;
}

std::string_view CStringElement::KeyText() const noexcept {
    const std::string_view bytes = Bytes();
    return bytes.substr(0, bytes.find('\0'));
}

std::int32_t CStringElement::GetAt(std::int32_t i) const noexcept {
    const CStringBody* body = GetBody();
    if (!body || i < 0 || static_cast<size_t>(i) + Start() >= body->Contents().size()) return -1;
    return static_cast<unsigned char>(body->Contents()[static_cast<size_t>(i) + Start()]);
}

void CStringElement::SetAt(std::int32_t i, unsigned char b) const noexcept {
    CStringBody* body = GetBody();
    if (!body || i < 0 || static_cast<size_t>(i) + Start() >= body->Contents().size()) return;
    body->Change()[static_cast<size_t>(i) + Start()] = static_cast<char>(b);
}

void CStringElement::Write(std::string_view bytes) const noexcept {
    CStringBody* body = GetBody();
    if (!body || Start() >= body->Contents().size()) return;
    const size_t count = std::min(bytes.size(), body->Contents().size() - Start());
    if (count > 0) std::memmove(body->Change().data() + Start(), bytes.data(), count);
}

TypedPtr<CStringElement> CStringElement::GetInterval(std::int32_t nStart, std::int32_t nCount) const {
    TypedPtr<CStringElement> view = CloneString();
    const CStringBody* body = GetBody();
    const std::int64_t size = body ? static_cast<std::int64_t>(body->Contents().size()) : 0;
    const std::int64_t start = std::min<std::int64_t>(static_cast<std::int64_t>(Start()) + std::max(nStart, 0), size);
    view->m_bView = true;
    view->m_nStart = static_cast<std::int32_t>(start);
    view->m_nLength = static_cast<std::int32_t>(std::min<std::int64_t>(std::max(nCount, 0), size - start));
    return view;
}

std::int32_t CStringElement::Search(const CStringElement* pSeek, unsigned* pIndex) const noexcept {
    // memmem is linear whatever is looked for; the search of std::string_view isn't.
    const std::string_view bytes = Bytes();
    const std::string_view seek = pSeek->Bytes();
    const void* at = ::memmem(bytes.data(), bytes.size(), seek.data(), seek.size());
    if (!at) return 0;
    *pIndex = static_cast<unsigned>(static_cast<const char*>(at) - bytes.data());
    return 1;
}

bool CStringElement::IsGlobal() const {
    const CStringBody* body = GetBody();
    return body && body->m_bGlobal;
}

bool CStringElement::IsEqual(const CElement* pOther) const {
    if (const auto* other = As<CStringElement>(pOther)) return other->Bytes() == Bytes();
    const auto* name = As<CSimpElement>(pOther);
    return name && name->m_nType == ET_NAME && name->m_pName->Text() == KeyText();
}

TypedPtr<CStringElement> CStringElement::CloneString() const {
    auto copy = MakeElement<CStringElement>();
    copy->m_Body = m_Body;
    copy->m_bView = m_bView;
    copy->m_nStart = m_nStart;
    copy->m_nLength = m_nLength;
    return WithAttributes(std::move(copy));
}

ElementPtr CStringElement::Clone() const { return CloneString(); }

ElementPtr CStringElement::DeepCopy() const {
    if (!GetBody()) return nullptr;
    return WithAttributes(MakeElement<CStringElement>(Bytes()));
}
