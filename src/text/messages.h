// Numbered messages of the interface language. Every word the program shows
// comes from here; a missing message is the empty text.
//
// A language is a binary ".mes" file in the program's folder. All numbers are
// 32-bit little-endian and all positions 1-based byte positions in the file:
//   - at position 1, 32 block positions (128 bytes); block b holds messages
//     (b-1)*1000+1 to b*1000, and 0 means the block is absent;
//   - at a block position, 1000 message positions (4000 bytes), 0 meaning the
//     message is absent;
//   - at a message position, 200 bytes of Windows-1252 text, ended by a NUL
//     or by the end of the 200 bytes.
// Blocks and texts may stand in any order after the table.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace sylvane {

class Fichier;

constexpr int kMessageMax = 32000;      // highest message number
constexpr std::size_t kTexteMax = 200;  // longest text, in bytes
constexpr int kMessagesParBloc = 1000;
constexpr int kBlocs = 32;

// Text of message n in the current language (Windows-1252), "" if missing.
std::string Message(int n);

// Message n with its first "&1" replaced by `valeur`.
std::string MessageAvec(int n, std::string_view valeur);

// Replaces the messages of the process by a fixed table (tests, and a
// fallback when no message file can be read).
void DefinitMessages(std::map<int, std::string> table);

// Reader over one open message file. It keeps the table of blocks, one block
// of 1000 positions, and the texts already read from that block. A damaged or
// short file never makes it read outside the file: what cannot be read is
// missing.
class LecteurMessages {
  public:
    explicit LecteurMessages(std::unique_ptr<Fichier> fichier);
    ~LecteurMessages();
    LecteurMessages(const LecteurMessages&) = delete;
    LecteurMessages& operator=(const LecteurMessages&) = delete;

    // Text of message n, "" when absent; never throws for a bad number.
    const std::string& message(int n);

  private:
    void chargeTable();
    void chargeBloc(int b);

    std::unique_ptr<Fichier> fichier_;
    std::uint64_t taille_ = 0;
    bool tableLue_ = false;
    std::array<std::uint32_t, kBlocs> table_{};
    int blocCharge_ = 0; // 0: nothing loaded
    std::array<std::uint32_t, kMessagesParBloc> bloc_{};
    // Texts of the loaded block already read, and which of them are.
    std::vector<std::string> textes_;
    std::vector<bool> lus_;
};

// The bytes of a message file holding `messages` (Windows-1252 texts).
// Throws std::invalid_argument for a number outside 1..32000, a text longer
// than 200 bytes, or a text holding a NUL.
std::string EcritFichierMessages(const std::map<int, std::string>& messages);

// Every message of a message file's bytes, in number order; absent and empty
// messages are left out. Damaged parts read as absent.
std::map<int, std::string> LitFichierMessages(std::string_view octets);

// The UTF-8 text list from which message files are built: one message a
// line, its number, a TAB and its text; blank lines and lines opening with
// "#" are comments. In the text "\n" stands for a line feed, "\t" for a TAB
// and "\\" for a backslash. Texts are converted to Windows-1252.
class ErreurSourceMessages : public std::runtime_error {
  public:
    ErreurSourceMessages(int ligne, const std::string& raison)
        : std::runtime_error("ligne " + std::to_string(ligne) + " : " + raison), ligne_(ligne) {}
    int ligne() const { return ligne_; }

  private:
    int ligne_;
};
// Throws ErreurSourceMessages for a malformed line, a number given twice or
// out of range, or a text longer than 200 bytes once converted.
std::map<int, std::string> LitSourceMessages(std::string_view utf8);
// The reverse: a text list (UTF-8) from Windows-1252 messages.
std::string EcritSourceMessages(const std::map<int, std::string>& messages);

// The language files of a folder: the "*.mes" names without extension, first
// letter in capitals and the rest in small letters (Windows-1252), sorted.
std::vector<std::string> ListeLangues(const std::string& dossier);

// Makes `langue` (Windows-1252) the language of Message(): opens
// "<dossier>/<langue>.mes", trying the name as given and then in any case.
// Returns false and keeps the current language when no such file opens.
bool ChoisirLangue(const std::string& langue, const std::string& dossier);
// Why a message file can't be used ("" when it can): too short, no block,
// a block or a text beyond its end. Checked once when a language is chosen,
// so that a damaged file is told about instead of showing empty texts.
std::string DefautFichierMessages(Fichier& f);
// The report of the last damaged message file met by ChoisirLangue, which is
// then forgotten, so that it is told once; "" when there is none.
std::string PrendErreurLangue();
// The language last chosen, "" when messages come from DefinitMessages.
const std::string& LangueCourante();

} // namespace sylvane
