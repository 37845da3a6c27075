// SPDX-License-Identifier: MIT
#include "simulator/strict_json.h"

#include <cstring>

namespace
{
constexpr int deepest = 200;

// Walks over the text once; each function leaves the position behind what it took, or sets the complaint.
class Walker
{
public:
    explicit Walker(const QByteArray &text)
        : text(text)
    {
    }

    QString walk()
    {
        blanks();
        value(0);
        blanks();
        if (complaint.isEmpty() && position != text.size())
            fail("text behind the value");
        if (complaint.isEmpty() && QString::fromUtf8(text).toUtf8() != text)
            complaint = "no UTF-8";
        return complaint;
    }

private:
    char peek() const { return position < text.size() ? text.at(position) : '\0'; }

    bool fail(const char *what)
    {
        if (complaint.isEmpty())
            complaint = QString("%1 at byte %2").arg(QLatin1String(what)).arg(position);
        return false;
    }

    bool take(char c)
    {
        if (peek() != c || position >= text.size())
            return false;
        position++;
        return true;
    }

    void blanks()
    {
        while (position < text.size() && strchr(" \t\n\r", peek()) && peek() != '\0')
            position++;
    }

    bool value(int depth)
    {
        if (depth > deepest)
            return fail("too deep");
        switch (peek()) {
        case '{':
            return members(depth, '}', true);
        case '[':
            return members(depth, ']', false);
        case '"':
            return string();
        case 't':
            return word("true");
        case 'f':
            return word("false");
        case 'n':
            return word("null");
        default:
            return number();
        }
    }

    // An object, or with keyed false an array.
    bool members(int depth, char end, bool keyed)
    {
        position++;
        blanks();
        if (take(end))
            return true;
        do {
            blanks();
            if (keyed && !key())
                return false;
            if (!value(depth + 1))
                return false;
            blanks();
        } while (take(','));
        return take(end) || fail("missing comma or end");
    }

    bool key()
    {
        if (peek() != '"' || !string())
            return fail("missing key");
        blanks();
        if (!take(':'))
            return fail("missing colon");
        blanks();
        return true;
    }

    bool string()
    {
        position++;
        while (position < text.size() && peek() != '"') {
            if (quint8(peek()) < 0x20)
                return fail("control character in a string");
            if (take('\\') && !escape())
                return false;
            position++;
        }
        return take('"') || fail("unterminated string");
    }

    // Leaves the position on the last character of the escape.
    bool escape()
    {
        if (peek() == 'u') {
            for (int i = 0; i < 4; i++) {
                position++;
                if (!isxdigit(quint8(peek())))
                    return fail("bad escape");
            }
            return true;
        }
        return (peek() != '\0' && strchr("\"\\/bfnrt", peek())) || fail("bad escape");
    }

    bool word(const char *whole)
    {
        if (text.mid(position, int(qstrlen(whole))) != whole)
            return fail("no value");
        position += int(qstrlen(whole));
        return true;
    }

    bool digits()
    {
        const int start = position;
        while (peek() >= '0' && peek() <= '9')
            position++;
        return position > start || fail("no value");
    }

    bool number()
    {
        take('-');
        if (!take('0') && !digits())
            return false;
        if (take('.') && !digits())
            return false;
        if (take('e') || take('E')) {
            if (!take('+'))
                take('-');
            return digits();
        }
        return true;
    }

    const QByteArray &text;
    int position = 0;
    QString complaint;
};
} // namespace

QString json_complaint(const QByteArray &text)
{
    return Walker(text).walk();
}
