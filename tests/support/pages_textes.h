// A surface that keeps the texts drawn, page by page, in the order drawn,
// measured with the metric of the tests: what a printed report says and on
// which page.
#pragma once

#include "charts/surface.h"

#include <string>
#include <string_view>
#include <vector>

namespace sylvane::test {

struct PagesTextes : Surface {
    std::vector<std::vector<std::string>> pages;
    const Metrique& Mesure() const override { return MetriqueDejaVu::Instance(); }
    void DebutPage(int, int, double, double) override { pages.emplace_back(); }
    void FinPage() override {}
    void Trait(double, double, double, double, Plume) override {}
    void Boite(double, double, double, double, std::int32_t) override {}
    void Texte(double, double, std::string_view t, const Police&, std::int32_t) override {
        pages.back().emplace_back(t);
    }
    // Whether page `page` (from 0) shows this very text.
    bool Contient(std::size_t page, std::string_view texte) const {
        for (const auto& t : pages.at(page))
            if (t == texte) return true;
        return false;
    }
};

} // namespace sylvane::test
