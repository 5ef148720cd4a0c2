// A temporary folder removed at the end of the test.
#pragma once

#include <filesystem>
#include <string>

namespace sylvane::test {

class DossierTemp {
  public:
    DossierTemp();
    ~DossierTemp();
    DossierTemp(const DossierTemp&) = delete;
    DossierTemp& operator=(const DossierTemp&) = delete;
    const std::string& chemin() const { return chemin_; }
    std::string operator/(const std::string& nom) const { return chemin_ + "/" + nom; }

  private:
    std::string chemin_;
};

// Whole-file helpers for tests.
std::string LitFichier(const std::string& chemin);
void EcritFichier(const std::string& chemin, const std::string& contenu);

} // namespace sylvane::test
