// The per-user settings store: sections of keys with text values, under the
// application "Sylvane". Names and values are Windows-1252 in memory.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace sylvane {

class SystemeFichiers;

class Reglages {
  public:
    virtual ~Reglages() = default;
    // The value of a key, or nothing when the key is absent.
    virtual std::optional<std::string> lit(const std::string& section,
                                           const std::string& cle) const = 0;
    virtual void ecrit(const std::string& section, const std::string& cle,
                       const std::string& valeur) = 0;
    // Removes a whole section; a missing one is no error.
    virtual void supprimeSection(const std::string& section) = 0;
    // The keys of a section with their values, in the order of their creation.
    virtual std::vector<std::pair<std::string, std::string>>
    section(const std::string& section) const = 0;

    // Between debutLot() and finLot() a store may hold its writes back and
    // make them durable in one go at finLot(). Lots nest.
    virtual void debutLot() {}
    virtual void finLot() {}

    // The value, or `defaut` when the key is absent.
    std::string lit(const std::string& section, const std::string& cle,
                    const std::string& defaut) const;
    // The value; when the key is absent, `defaut` is written and returned.
    std::string litOuEcrit(const std::string& section, const std::string& cle,
                           const std::string& defaut);
};

// Groups the writes of a scope into one lot.
class LotReglages {
  public:
    explicit LotReglages(Reglages& r) : r_(r) { r_.debutLot(); }
    ~LotReglages() noexcept(false) { r_.finLot(); }
    LotReglages(const LotReglages&) = delete;
    LotReglages& operator=(const LotReglages&) = delete;

  private:
    Reglages& r_;
};

// Settings held in memory only: tests, and a run without a configuration
// folder.
class ReglagesMemoire : public Reglages {
  public:
    std::optional<std::string> lit(const std::string& section,
                                   const std::string& cle) const override;
    using Reglages::lit;
    void ecrit(const std::string& section, const std::string& cle,
               const std::string& valeur) override;
    void supprimeSection(const std::string& section) override;
    std::vector<std::pair<std::string, std::string>>
    section(const std::string& section) const override;
    // Every section name, in order of creation.
    std::vector<std::string> sections() const;

  protected:
    // The keys keep their order of creation; the places make each look-up
    // one step, so that a settings file of many keys reads in linear time.
    struct Section {
        std::string nom;
        std::vector<std::pair<std::string, std::string>> cles;
        std::unordered_map<std::string, std::size_t> places;
    };
    std::vector<Section> sections_;

  private:
    const Section* trouve(const std::string& section) const;
    std::unordered_map<std::string, std::size_t> placesSections_;
};

// Settings in an INI file, UTF-8 on disk:
//   [Section]
//   Clé=valeur
// A backslash, a line feed, a carriage return and, in names, "=" and "]"
// are written as \\, \n, \r, \= and \]. Every change is written at once
// (or at the end of a lot) to a temporary file that then replaces the old
// one, so that a crash leaves either the old settings or the new ones.
class ReglagesIni : public ReglagesMemoire {
  public:
    // Reads the file when it exists; a missing file is an empty store, and
    // unreadable lines are passed over.
    ReglagesIni(SystemeFichiers& fs, std::string chemin);
    void ecrit(const std::string& section, const std::string& cle,
               const std::string& valeur) override;
    void supprimeSection(const std::string& section) override;
    void debutLot() override { ++lot_; }
    void finLot() override;
    // Writes the file now. Throws ErreurES when it cannot.
    void enregistre();
    const std::string& chemin() const { return chemin_; }

  private:
    void change();
    SystemeFichiers& fs_;
    std::string chemin_;
    int lot_ = 0;
    bool sale_ = false;
};

// The user's configuration folder: $XDG_CONFIG_HOME/Sylvane, by default
// ~/.config/Sylvane (UTF-8 path). It is not created here.
std::string DossierConfiguration();
// The settings file in that folder, "Sylvane.ini".
std::string FichierReglages();

} // namespace sylvane
