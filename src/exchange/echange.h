// What the long exchange operations share with the user interface: a
// Yes/No question by message number, a progress line and a stop flag.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>

namespace sylvane {

struct DialogueEchange {
    // Yes/No box of a numbered message. Without it every answer is No.
    std::function<bool(int message)> question;
    // Progress line, given every hundred records.
    std::function<void(const std::string& texte)> progres;
    // The stop flag of the progress panel, polled every hundred records.
    std::function<bool()> arret;
    // A text file to show the user (the error file of an outside tool).
    std::function<void(const std::string& chemin)> montreFichier;
    // A plain box with a text.
    std::function<void(const std::string& texte)> message;

    bool Demande(int m) const { return question && question(m); }
    void Progres(const std::string& t) const {
        if (progres) progres(t);
    }
    bool Arret() const { return arret && arret(); }
};

// A file that cannot be read to its end: truncated, damaged, or a read
// stopped by the user. What was read before stays in the base, committed.
class ErreurLecture : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace sylvane
