// SPDX-License-Identifier: MIT
#include "kortools/platform/key_names.h"

#include <algorithm>
#include <functional>
#include <iterator>

namespace kortools::platform {
namespace {

struct Key {
    unsigned int number;
    wchar_t const *english;
    wchar_t const *french;
};

constexpr Key keys[] = {
    { 0x03, L"Break", L"Attn" },
    { 0x08, L"Backspace", L"Retour arrière" },
    { 0x09, L"Tab", L"Tab" },
    { 0x0C, L"Num 5", L"5 (pavé num.)" }, // while the numeric pad moves the cursor
    { 0x0D, L"Enter", L"Entrée" },
    { 0x10, L"Shift", L"Maj" },
    { 0x11, L"Ctrl", L"Ctrl" },
    { 0x12, L"Alt", L"Alt" },
    { 0x13, L"Pause", L"Pause" },
    { 0x14, L"Caps Lock", L"Verr. maj." },
    { 0x1B, L"Esc", L"Échap" },
    { 0x20, L"Space", L"Espace" },
    { 0x21, L"Page Up", L"Page préc." },
    { 0x22, L"Page Down", L"Page suiv." },
    { 0x23, L"End", L"Fin" },
    { 0x24, L"Home", L"Origine" },
    { 0x25, L"Left", L"Gauche" },
    { 0x26, L"Up", L"Haut" },
    { 0x27, L"Right", L"Droite" },
    { 0x28, L"Down", L"Bas" },
    { 0x29, L"Select", L"Sélection" },
    { 0x2A, L"Print", L"Imprimer" },
    { 0x2B, L"Execute", L"Exécuter" },
    { 0x2C, L"Print Screen", L"Impr. écran" },
    { 0x2D, L"Insert", L"Inser" },
    { 0x2E, L"Delete", L"Suppr" },
    { 0x2F, L"Help", L"Aide" },
    { 0x5B, L"Left Windows", L"Windows gauche" },
    { 0x5C, L"Right Windows", L"Windows droite" },
    { 0x5D, L"Application", L"Application" },
    { 0x5F, L"Sleep", L"Veille" },
    { 0x6A, L"Num *", L"* (pavé num.)" },
    { 0x6B, L"Num +", L"+ (pavé num.)" },
    { 0x6C, L"Num Separator", L"Séparateur (pavé num.)" },
    { 0x6D, L"Num -", L"- (pavé num.)" },
    { 0x6E, L"Num Del", L". (pavé num.)" },
    { 0x6F, L"Num /", L"/ (pavé num.)" },
    { 0x90, L"Num Lock", L"Verr. num." },
    { 0x91, L"Scroll Lock", L"Arrêt défil." },
    { 0xA0, L"Shift", L"Maj" },
    { 0xA1, L"Right Shift", L"Maj droite" },
    { 0xA2, L"Ctrl", L"Ctrl" },
    { 0xA3, L"Right Ctrl", L"Ctrl droite" },
    { 0xA4, L"Alt", L"Alt" },
    { 0xA5, L"Right Alt", L"Alt Gr" },
    { 0xA6, L"Browser Back", L"Page web précédente" },
    { 0xA7, L"Browser Forward", L"Page web suivante" },
    { 0xA8, L"Browser Refresh", L"Actualiser la page web" },
    { 0xA9, L"Browser Stop", L"Arrêter la page web" },
    { 0xAA, L"Browser Search", L"Rechercher sur le web" },
    { 0xAB, L"Browser Favorites", L"Favoris web" },
    { 0xAC, L"Browser Home", L"Page d'accueil" },
    { 0xAD, L"Volume Mute", L"Muet" },
    { 0xAE, L"Volume Down", L"Baisser le volume" },
    { 0xAF, L"Volume Up", L"Augmenter le volume" },
    { 0xB0, L"Next Track", L"Piste suivante" },
    { 0xB1, L"Previous Track", L"Piste précédente" },
    { 0xB2, L"Media Stop", L"Arrêt" },
    { 0xB3, L"Play/Pause", L"Lecture/Pause" },
    { 0xB4, L"Mail", L"Messagerie" },
    { 0xB5, L"Media Select", L"Média" },
    { 0xB6, L"Launch Application 1", L"Lancer l'application 1" },
    { 0xB7, L"Launch Application 2", L"Lancer l'application 2" },
    // Where these are differs from layout to layout; the names are those of the US one, and of the
    // French one where it has the same key.
    { 0xBA, L";", L"$" },
    { 0xBB, L"=", L"=" },
    { 0xBC, L",", L"," },
    { 0xBD, L"-", L"-" },
    { 0xBE, L".", L";" },
    { 0xBF, L"/", L":" },
    { 0xC0, L"`", L"ù" },
    { 0xDB, L"[", L")" },
    { 0xDC, L"\\", L"*" },
    { 0xDD, L"]", L"^" },
    { 0xDE, L"'", L"²" },
    { 0xDF, L"", L"!" },
    { 0xE2, L"\\", L"<" },
};
static_assert(
    std::ranges::adjacent_find(keys, std::greater_equal(), &Key::number) == std::ranges::end(keys));

} // namespace

std::wstring get_key_name(unsigned int virtual_key, KeyLanguage language)
{
    bool const is_french = language == KeyLanguage::French;
    if ((virtual_key >= '0' && virtual_key <= '9') || (virtual_key >= 'A' && virtual_key <= 'Z'))
        return std::wstring(1, static_cast<wchar_t>(virtual_key));
    if (virtual_key >= 0x60 && virtual_key <= 0x69) {
        std::wstring const digit(1, static_cast<wchar_t>(virtual_key - 0x60 + '0'));
        return is_french ? digit + L" (pavé num.)" : L"Num " + digit;
    }
    if (virtual_key >= 0x70 && virtual_key <= 0x87)
        return L'F' + std::to_wstring(virtual_key - 0x70 + 1);
    auto const found = std::ranges::lower_bound(keys, virtual_key, {}, &Key::number);
    if (found == std::end(keys) || found->number != virtual_key)
        return {};
    return is_french ? found->french : found->english;
}

} // namespace kortools::platform
