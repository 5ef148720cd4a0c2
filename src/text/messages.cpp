#include "text/messages.h"

namespace sylvane {
namespace {
std::map<int, std::string>& table() {
    static std::map<int, std::string> t;
    return t;
}
} // namespace

std::string Message(int n) {
    auto it = table().find(n);
    return it == table().end() ? std::string() : it->second;
}

void DefinitMessages(std::map<int, std::string> t) { table() = std::move(t); }

} // namespace sylvane
