#pragma once

#include <QByteArrayView>

namespace orvelle {

/// Cuts RTF into its tokens. Source: RTF specification 1.9.1, "RTF syntax".
/// Any bytes are taken; numbers beyond 32 bits are cut to them, and binary
/// data (\binN) is skipped as part of its word, however much of it there is.
class RtfLexer
{
public:
    enum class Kind {
        End,
        GroupOpen,
        GroupClose,
        Word,   ///< a control word: `name`, perhaps with a `number`
        Symbol, ///< a control symbol: `byte` is the character
        Byte,   ///< text: `byte`, in the code page of the font
    };
    struct Token {
        Kind kind = Kind::End;
        QByteArrayView name;
        bool hasNumber = false;
        int number = 0;
        unsigned char byte = 0;
    };

    /// The bytes must outlive the lexer and its tokens.
    explicit RtfLexer(QByteArrayView bytes) : m_bytes(bytes) {}

    Token next();

private:
    Token control();
    Token word();
    Token hexByte();
    bool readNumber(int &number);

    QByteArrayView m_bytes;
    qsizetype m_at = 0;
};

} // namespace orvelle
