// `eexec` (Adobe Type 1 Font Format, 7): a file over the encrypted bytes that is run as a program, and that
// `currentfile` gives meanwhile. The font itself ends it by `closefile`.
#include "complete/EexecOperators.h"

#include <array>
#include <utility>
#include <vector>

#include "complete/FilterObjects.h"
#include "complete/text/TypeOneCipher.h"
#include "interp/Operands.h"
#include "objects/HexDigit.h"

namespace {

/// Bytes that the encryption begins with and that mean nothing.
constexpr int LEADING_BYTES = 4;

bool IsBlank(unsigned char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool IsHexDigit(unsigned char c) { return HexDigitValue(c) >= 0; }

/// Decrypts one byte for each that is asked for and takes no more of the file below than it needs for them, so that the
/// file goes on exactly behind what the program has read when it closes this one.
class CEexecSource final : public CByteSource {
public:
    CEexecSource(CFilterEPS& m, TypedPtr<CFileElement> below) noexcept
        : m_Limits(m), m_pBelow(std::move(below)), m_Reader(*m_pBelow) {}

    [[nodiscard]] std::ptrdiff_t Read(unsigned char* buffer, std::size_t) override {
        if (!m_bStarted) {
            m_bStarted = true;
            if (const int result = Start(); result != 1) return result;
        }
        return Decrypt(*buffer);
    }

private:
    /// 1, 0 at the end, -1.
    int TakeRaw(unsigned char& c) {
        if (m_nHeldAt < m_nHeld) {
            c = m_Held[m_nHeldAt++];
            return 1;
        }
        int result = 1;
        const std::span<const unsigned char> bytes = m_Reader.Peek(result);
        if (result != 1) return result;
        c = bytes.front();
        m_Reader.Skip(1);
        return ++m_nTaken % FILTER_BLOCK == 0 && !m_Limits.Spend(FILTER_BLOCK) ? -1 : 1;
    }

    /// Passes the blanks in front, tells the two forms apart by the first four bytes behind them, and decrypts the
    /// bytes that mean nothing.
    int Start() {
        unsigned char c = 0;
        do {
            if (const int result = TakeRaw(c); result != 1) return result;
        } while (IsBlank(c));
        m_Held[0] = c;
        std::size_t held = 1;
        while (held < m_Held.size() && TakeRaw(m_Held[held]) == 1) ++held;
        m_nHeld = held;
        m_bHex = true;
        for (std::size_t i = 0; i < held; ++i) m_bHex = m_bHex && (IsHexDigit(m_Held[i]) || IsBlank(m_Held[i]));
        for (int i = 0; i < LEADING_BYTES; ++i) {
            if (const int result = Decrypt(c); result != 1) return result;
        }
        return 1;
    }

    /// The next encrypted byte: 1, 0 at the end, -1.
    int TakeCipher(unsigned char& cipher) {
        if (!m_bHex) return TakeRaw(cipher);
        int digits[2] = {};
        for (int& digit : digits) {
            unsigned char c = 0;
            do {
                if (const int result = TakeRaw(c); result != 1) return result;
            } while (IsBlank(c));
            digit = HexDigitValue(c);
            if (digit < 0) return 0;
        }
        cipher = static_cast<unsigned char>(digits[0] * 16 + digits[1]);
        return 1;
    }

    int Decrypt(unsigned char& plain) {
        unsigned char cipher = 0;
        if (const int result = TakeCipher(cipher); result != 1) return result;
        plain = m_Cipher.Decrypt(cipher);
        return 1;
    }

    CMachineLimits m_Limits;
    TypedPtr<CFileElement> m_pBelow;
    CFileReader m_Reader;
    std::array<unsigned char, 4> m_Held{};  ///< the bytes that the form was told by
    std::size_t m_nHeld = 0;
    std::size_t m_nHeldAt = 0;
    std::size_t m_nTaken = 0;
    text::TypeOneCipher m_Cipher{text::TypeOneCipher::EEXEC_KEY};
    bool m_bStarted = false;
    bool m_bHex = false;
};

/// Takes a dictionary at a height of the dictionary stack out, if it still is the one that was put there.
void RemoveDictAt(CDictStack& stack, int height, const CElement& dict) {
    const CElement* there = stack.AtFromBottom(height);
    if (!there || !there->IsEqual(&dict)) return;
    std::vector<ElementPtr> above;
    for (; stack.GetCount() > height + 1; stack.Pop()) above.push_back(stack.Top()->Clone());
    stack.Pop();
    for (; !above.empty(); above.pop_back()) stack.PushCopy(*above.back());
}

// file | string  eexec  -                    stackunderflow typecheck
int OpEexec(CFilterEPS& m) {
    Operands in(m);
    in.OneOf(0, {ET_FILE, ET_STRING});
    if (!in) return -1;
    const ElementPtr operand = m.Pop();
    constexpr std::int32_t oneByte = 1;  // no look ahead
    auto file = MakeElement<CFileElement>(std::make_unique<CEexecSource>(m, OpenDataSource(m, *operand)), oneByte);
    if (!StandOn(m, *file, *operand)) {
        m.Push(operand->Clone());
        return -1;
    }
    file->m_bExec = true;
    const ElementPtr systemDict = m.m_DictStack.Bottom()->Clone();
    const int height = m.m_DictStack.GetCount();
    m.m_DictStack.PushCopy(*systemDict);
    const int result = m.ExecuteObject(*file);
    if (result == 1 || m.m_nError != PSERR_NONE) RemoveDictAt(m.m_DictStack, height, *systemDict);
    if (result == 1) return 1;
    if (m.m_nError != PSERR_NONE) m.Push(operand->Clone());
    return -1;
}

constexpr OpRow kRows[] = {{"eexec", OpEexec}};

}  // namespace

constinit const OpTable kEexecOperators{kRows};
