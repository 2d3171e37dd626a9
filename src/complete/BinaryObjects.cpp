// printobject and writeobject: objects as binary object sequences (PLRM, Binary Encoding; the reader of the same form
// is BinaryTokens.cpp). An object of eight bytes is its type, a tag, a length and a value; elements of arrays follow
// the array, and texts all objects.
#include "complete/BinaryObjects.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "complete/FilterObjects.h"
#include "interp/Operands.h"

namespace {

constexpr std::size_t OBJECT_SIZE = 8;
constexpr std::size_t MAX_OBJECTS = 1 << 16;  // also of an array that contains itself
constexpr std::size_t MAX_LENGTH = 0xFFFF;    // of an array or a text
constexpr unsigned EXECUTABLE = 128;

enum BinaryType : unsigned {
    B_NULL = 0,
    B_INTEGER = 1,
    B_REAL = 2,
    B_NAME = 3,
    B_BOOLEAN = 4,
    B_STRING = 5,
    B_ARRAY = 9,
    B_MARK = 10
};

/// Writes one object and what it refers to. Format 1 to 4 as setobjectformat has them: the odd ones begin with the high
/// byte.
class CObjectWriter {
public:
    CObjectWriter(std::int32_t format, std::uint8_t tag) noexcept : m_bHighFirst(format % 2 != 0), m_nTag(tag) {
        m_nToken = static_cast<unsigned char>(127 + format);
    }

    /// PSERR_NONE, PSERR_TYPECHECK for an object that has no binary form, PSERR_RANGE for too much.
    [[nodiscard]] ErrorCode Encode(const CElement& object, std::string& bytes) {
        Add(object);
        for (std::size_t i = 0; i < m_Arrays.size() && m_Error == PSERR_NONE; ++i) {
            const auto [place, array] = m_Arrays[i];
            PutNumber(place * OBJECT_SIZE + 4, static_cast<std::uint32_t>(m_Objects.size()), 4);
            for (std::int32_t k = 0; k < array->GetLength() && m_Error == PSERR_NONE; ++k) Add(*array->GetAt(k));
        }
        if (m_Error != PSERR_NONE) return m_Error;
        for (const auto& [place, offset] : m_Texts) {
            PutNumber(place * OBJECT_SIZE + 4, static_cast<std::uint32_t>(m_Objects.size() + offset), 4);
        }
        const std::size_t body = m_Objects.size() + m_Characters.size();
        constexpr std::size_t shortHead = 4, longHead = 8;
        const bool isShort = body + shortHead <= MAX_LENGTH;
        bytes.assign(1, static_cast<char>(m_nToken));
        bytes.push_back(isShort ? '\1' : '\0');
        bytes.append(isShort ? Number(static_cast<std::uint32_t>(body + shortHead), 2)
                             : Number(1, 2) + Number(static_cast<std::uint32_t>(body + longHead), 4));
        bytes += m_Objects;
        bytes += m_Characters;
        return PSERR_NONE;
    }

private:
    [[nodiscard]] std::string Number(std::uint32_t value, int size) const {
        std::string bytes;
        for (int i = 0; i < size; ++i) {
            const int shift = 8 * (m_bHighFirst ? size - 1 - i : i);
            bytes.push_back(static_cast<char>(value >> shift & 0xFF));
        }
        return bytes;
    }
    void PutNumber(std::size_t at, std::uint32_t value, int size) {
        m_Objects.replace(at, static_cast<std::size_t>(size), Number(value, size));
    }
    void Put(unsigned type, bool executable, std::size_t length, std::uint32_t value) {
        if (m_Objects.size() >= MAX_OBJECTS * OBJECT_SIZE || length > MAX_LENGTH) m_Error = PSERR_RANGE;
        m_Objects.push_back(static_cast<char>(type | (executable ? EXECUTABLE : 0)));
        m_Objects.push_back(m_Objects.size() == 1 ? static_cast<char>(m_nTag) : '\0');
        m_Objects += Number(static_cast<std::uint32_t>(length), 2) + Number(value, 4);
    }
    void PutText(unsigned type, bool executable, std::string_view text) {
        m_Texts.emplace_back(m_Objects.size() / OBJECT_SIZE, m_Characters.size());
        Put(type, executable, text.size(), 0);
        m_Characters += text;
    }
    void Add(const CElement& e) {
        if (const auto* number = As<CNumberElement>(&e)) {
            if (number->IsReal()) {
                Put(B_REAL, false, 0, std::bit_cast<std::uint32_t>(static_cast<float>(number->GetReal())));
            } else {
                Put(B_INTEGER, false, 0, static_cast<std::uint32_t>(number->GetInt()));
            }
        } else if (const auto* flag = As<CBoolElement>(&e)) {
            Put(B_BOOLEAN, false, 0, flag->GetValue() ? 1 : 0);
        } else if (const auto* string = As<CStringElement>(&e)) {
            PutText(B_STRING, e.m_bExec, string->Bytes());
        } else if (const auto* array = As<CArrayElement>(&e)) {
            m_Arrays.emplace_back(m_Objects.size() / OBJECT_SIZE, array);
            Put(B_ARRAY, e.m_bExec, static_cast<std::size_t>(array->GetLength()), 0);
        } else if (const auto* op = As<COperatorElement>(&e)) {
            PutText(B_NAME, true, op->m_pName->Text());
        } else if (e.m_nType == ET_NULL) {
            Put(B_NULL, false, 0, 0);
        } else if (e.m_nType == ET_MARK) {
            Put(B_MARK, false, 0, 0);
        } else if (e.m_nType == ET_NAME || e.m_nType == ET_RAWTOKEN) {
            AddName(*static_cast<const CSimpElement&>(e).m_pName, e.m_bExec || e.m_nType == ET_RAWTOKEN,
                    e.m_nType == ET_RAWTOKEN);
        } else {
            m_Error = PSERR_TYPECHECK;
        }
    }
    void AddName(const CName& name, bool executable, bool isToken) {
        if (!isToken || !name.IsNumber()) return PutText(B_NAME, executable, name.Text());
        const bool isWhole = name.m_nNumberClass != NumberClass::real && std::fabs(name.m_fNumber) < 2147483648.0;
        Put(isWhole ? B_INTEGER : B_REAL, false, 0,
            isWhole ? static_cast<std::uint32_t>(static_cast<std::int32_t>(name.m_fNumber))
                    : std::bit_cast<std::uint32_t>(static_cast<float>(name.m_fNumber)));
    }

    bool m_bHighFirst;
    std::uint8_t m_nTag;
    unsigned char m_nToken;
    std::string m_Objects;
    std::string m_Characters;
    std::vector<std::pair<std::size_t, const CArrayElement*>> m_Arrays;  ///< still to be filled: place, and what it is
    std::vector<std::pair<std::size_t, std::size_t>> m_Texts;            ///< place, and offset of the characters
    ErrorCode m_Error = PSERR_NONE;
};

/// The bytes of the object below the tag. 1, or -1 with the code.
int EncodeOperand(CFilterEPS& m, Operands& in, std::string& bytes) {
    const std::int32_t tag = in.Int(0);
    const CElement* object = in.Any(1);
    in.Require(tag >= 0 && tag <= 255, PSERR_RANGE);
    if (!in) return -1;
    if (m.m_nObjectFormat < 1 || m.m_nObjectFormat > 4) return m.Fail(PSERR_UNDEFINED);
    const ErrorCode error = CObjectWriter(m.m_nObjectFormat, static_cast<std::uint8_t>(tag)).Encode(*object, bytes);
    return error == PSERR_NONE ? 1 : m.Fail(error, error == PSERR_RANGE ? "limitcheck" : nullptr);
}

// object tag  printobject  -                 stackunderflow typecheck rangecheck limitcheck undefined
int OpPrintobject(CFilterEPS& m) {
    Operands in(m);
    std::string bytes;
    if (EncodeOperand(m, in, bytes) != 1) return -1;
    m.Drop(2);
    return 1;
}

// file object tag  writeobject  -            stackunderflow typecheck rangecheck limitcheck undefined ioerror
int OpWriteobject(CFilterEPS& m) {
    Operands in(m);
    in.Get<CFileElement>(2);
    std::string bytes;
    if (!in || EncodeOperand(m, in, bytes) != 1) return -1;
    ElementPtr tag = m.Pop();
    ElementPtr object = m.Pop();
    auto file = Take<CFileElement>(m);
    CFileBody* body = file->GetBody();
    if (body && body->Write(bytes) == 1) return 1;
    m.Push(std::move(file));
    m.Push(std::move(object));
    m.Push(std::move(tag));
    return FailRead(m);
}

// int  setobjectformat  -                    stackunderflow typecheck rangecheck
int OpSetobjectformat(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t format = in.Int(0);
    in.Require(format >= 0 && format <= 4, PSERR_RANGE);
    if (!in) return -1;
    m.m_nObjectFormat = format;
    m.Drop(1);
    return 1;
}

constexpr OpRow kRows[] = {
    {"printobject", OpPrintobject},
    {"writeobject", OpWriteobject},
    {"setobjectformat", OpSetobjectformat},
};

}  // namespace

constinit const OpTable kBinaryObjectOperators{kRows};
