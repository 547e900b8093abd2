// SPDX-License-Identifier: MIT
// Corrections of the Windows pages; code_page_corrections.h says what the two texts are.
//
// Recorded by converting every byte and every character of the basic plane with the system services
// of Windows (as Wine has them) and leaving out what the converter of the page gives as well.
// Characters that would not read well (right-to-left, combining, private) are escaped.
#pragma once

#include "kortools/platform/posix/code_page_corrections.h"

#include <string_view>

namespace kortools::platform {

using namespace std::string_view_literals;

// clang-format off
inline constexpr CodePageCorrections windows_corrections[] = {
    { 932,
        u"\u0080\u0080\u00A0\uF8F0ý\uF8F1þ\uF8F2ÿ\uF8F3"sv,
        u"¡!¢￠£￡¦|©cªa«≪¬￢\u00AD-®R\u00AF\uFFE3²2³3µμ·・\u00B8，¹1ºo»≫ÀAÁAÂAÃAÄAÅAÆAÇCÈEÉEÊE"sv
        u"ËEÌIÍIÎIÏIÐDÑNÒOÓOÔOÕOÖOØOÙUÚUÛUÜUÝYÞTßsàaáaâaãaäaåaæaçcèeéeêeëeìiíiîiïiðdñnòoóoôoõoöo"sv
        u"øoùuúuûuüuýyþtÿy—?‖?‾?−?〜?ゔヴ俠?剝?啞?嚙?囊?塡?屛?屢?搔?摑?攢?栅?梎?潑?瀆?焰?瘦?禱?"sv
        u"簞?繈?繡?繫?腁?荆?萊?蔣?蟬?蠟?軀?醬?醱?頰?頹?顚?驒?鷗?鹼?麴?麵?\uF86F?"sv },
    { 936,
        {},
        u"￩?￪?￫?￬?￮?"sv },
    { 1250,
        {},
        u"¡!¢c£L¥Yªa\u00AF—²2³3¹1ºo¼1½1¾3ÀAÃAÅAÆAÈEÊEÌIÏIÑNÒOÕOØOÙUÛUàaãaåaæaèeêeìiïiñnòoõoøoùu"sv
        u"ûuÿyĀAāaĈCĉcĊCċcĒEēeĔEĕeĖEėeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIıiĴJĵjĶKķkĻLļlŅN"sv
        u"ņnŌOōoŎOŏoŒOœoŖRŗrŜSŝsŦTŧtŨUũuŪUūuŬUŭuŲUųuŴWŵwŶYŷyŸYƀbƉĐƑFƒfƗIƚlƟOƠOơoƫtƮTƯUưuƶzǀ|ǃ!ǍA"sv
        u"ǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'\u02BA\"\u02BB‘"sv
        u"\u02BC'\u02C4^\u02C6^\u02C8'\u02C9Ż\u02CA\u00B4\u02CB`\u02CD_\u02DA°\u02DC~\u0300`"sv
        u"\u0301\u00B4\u0302^\u0303~\u0304Ż\u0305Ż\u0306\u02D8\u0307\u02D9\u0308\u00A8\u030A°"sv
        u"\u030C\u02C7\u030E\"\u0327\u00B8\u0331_\u0332_\u037E;βßμµһh։:٪%\u2000\u0020"sv
        u"\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐-‑-․•′'″”‵`‼!"sv
        u"⁄/⁰°⁴4⁵5⁶6⁷7⁸8₀0₁1₂2₃3₄4₅5₆6₇7₈8₉9₤ŁℂCℇEℊgℋHℌHℍHℎhℐIℑIℒLℓlℕN℘PℙPℚQℛRℜRℝRℤZℨZ\u212AK"sv
        u"\u212BĹℬBℭC℮eℯeℰEℱFℳMℴo←‹↑^→›↓\u02C7↔-↕|↨|∅Ř−-∓±∕/∖\\∗*∘°∙•∟L∣|∶:∼~≪«≫»⋅·⌂¦⌃^\u2329<"sv
        u"\u232A>─¦│-┌-┐¬└L┘-├+┤+┬T┴+┼+═=║¦╔-╗¬╚L╝-╠¦╣¦╦T╩¦╬+▀-▄-█-░-▒-▓-■¦▬-▲^►>▼\u02C7◄<○0◘•◙0"sv
        u"☺\u02D8☻\u02D8☼0♀+♂>♠¦♣¦♥¦♦¦♪d♫d❘|❛‘❜’❝“❞”\u3000\u0020〈<〉>《«》»〚[〛]〝“〞”〟„・·"sv
        u"\u30FC—"sv },
    { 1251,
        {},
        u"ÀAÁAÂAÃAÄAÅAÇCÈEÉEÊEËEÌIÍIÎIÏIÑNÒOÓOÔOÕOÖOØOÙUÚUÛUÜUÝYàaáaâaãaäaåaçcèeéeêeëeìiíiîiïiñn"sv
        u"òoóoôoõoöoøoùuúuûuüuýyÿyĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĞG"sv
        u"ğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏoŐOőoŔR"sv
        u"ŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźzŻZżzŽZžzƀb"sv
        u"ƗIƚlƟOƠOơoƫtƮTƯUưuǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰj‼!←<↑^→>↓v"sv
        u"↔-↕¦↨¦∙•√v∟L⌂¦─-│¦┌-┐¬└L┘-├+┤+┬T┴+┼+═=║¦╒-╓г╔г╕¬╖¬╗¬╘L╙L╚L╛-╜-╝-╞¦╟¦╠¦╡¦╢¦╣¦╤T╥T╦T╧¦╨¦"sv
        u"╩¦╪+╫+╬+▀-▄-█-▌¦▐¦░-▒-▓-■¦▬-▲^►>▼Ў◄<○0◘•◙0☺O☻O☼0♀+♂>♠¦♣¦♥¦♦¦♪d♫d"sv },
    { 1252,
        {},
        u"ĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐÐđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪI"sv
        u"īiĬIĭiĮIįiİIıiĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏoŐOőoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşs"sv
        u"ŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŹZźzŻZżzƀbƉÐƑƒƗIƚlƟOƠOơoƫtƮTƯUưuƶzǀ|ǃ!ǍAǎa"sv
        u"ǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'\u02BA\"\u02BC'\u02C4^"sv
        u"\u02C8'\u02C9\u00AF\u02CA\u00B4\u02CB`\u02CD_\u02DA°\u0300`\u0301\u00B4\u0302^\u0303~"sv
        u"\u0304\u00AF\u0305\u00AF\u0308\u00A8\u030A°\u030E\"\u0327\u00B8\u0331_\u0332_\u037E;ΓG"sv
        u"ΘTΣSΦFΩOαaβßδdεeμµπpσsτtφfһh։:٪%\u2000\u0020\u2001\u0020\u2002\u0020\u2003\u0020"sv
        u"\u2004\u0020\u2005\u0020\u2006\u0020‐-‑-‗=․·′'‵`⁄/⁰°⁴4⁵5⁶6⁷7⁸8\u207Fn₀0₁1₂2₃3₄4₅5₆6₇7"sv
        u"₈8₉9₡¢₤£₧PℂCℇEℊgℋHℌHℍHℎhℐIℑIℒLℓlℕN℘PℙPℚQℛRℜRℝRℤZℨZ\u212AK\u212BÅℬBℭC℮eℯeℰEℱFℳMℴo∅Ø−-∓±"sv
        u"∕/∖\\∗*∘°∙·√v∞8∣|∩n∶:∼~≈\u02DC≡=≤=≥=≪«≫»⋅·⌂¦⌃^⌐¬⌠(⌡)\u2329<\u232A>─-│¦┌+┐+└+┘+├+┤¦┬-┴-"sv
        u"┼+═-║¦╒+╓+╔+╕+╖+╗+╘+╙+╚+╛+╜+╝+╞¦╟¦╠¦╡¦╢¦╣¦╤-╥-╦-╧-╨-╩-╪+╫+╬+▀\u00AF▄_█¦▌¦▐¦░¦▒¦▓¦■¦☼¤"sv
        u"❘|\u3000\u0020〈<〉>《«》»〚[〛]・·"sv },
    { 1253,
        u"ª\uF8F9Ò\uF8FAÿ\uF8FB"sv,
        u"ª?\u00B4/ÀAÁAÂAÃAÄAÅAÇCÈEÉEÊEËEÌIÍIÎIÏIÑNÒOÓOÔOÕOÖOØOÙUÚUÛUÜUÝYàaáaâaãaäaåaçcèeéeêeëe"sv
        u"ìiíiîiïiñnòoóoôoõoöoøoùuúuûuüuýyÿyĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęe"sv
        u"ĚEěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōo"sv
        u"ŎOŏoŐOőoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźz"sv
        u"ŻZżzŽZžzƀbƑƒƗIƚlƟOƠOơoƫtƮTƯUưuǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭo"sv
        u"ǰj\u030D\u0384\u037E;ϕ?‼!←<↑^→>↓v↔-↕¦↨¦∟L⌂¦─-│¦┌-┐¬└L┘-├+┤+┬T┴+┼+═=║¦╔-╗¬╚L╝-╠¦╣¦╦T╩¦"sv
        u"╬+▀-▄-█-░-▒-▓-■¦▬-▲^►>▼\u0385◄<○0◘•◙0☺O☻O☼0♀+♂>♠¦♣¦♥¦♦¦♪d♫d"sv },
    { 1254,
        {},
        u"ÝYýyĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪI"sv
        u"īiĬIĭiĮIįiĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏoŐOőoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŢTţtŤTťt"sv
        u"ŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŹZźzŻZżzŽZžzƀbƉDƑƒƗIƚlƟOƠOơoƫtƮTƯUưuƶzǀ|ǃ!ǍAǎaǏIǐi"sv
        u"ǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'\u02BA\"\u02BB‘\u02BC'"sv
        u"\u02C4^\u02C7^\u02C8'\u02C9\u00AF\u02CA\u00B4\u02CB`\u02CD_\u02D8^\u02D9'\u02DA°"sv
        u"\u02DB\u00B8\u02DD\u00A8\u0300`\u0301\u00B4\u0302^\u0303\u02DC\u0304\u00AF\u0305\u00AF"sv
        u"\u0306\u02C6\u0307·\u0308\u00A8\u030A§\u030C\u02C6\u030E\u00A8\u0327\u00B8\u0331_"sv
        u"\u0332_βßμµһh։:٪%\u2000\u0020\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020"sv
        u"\u2005\u0020\u2006\u0020‐-‑-․•′'″\u00A8‵`‼!⁄/⁰°⁴4⁵5⁶6⁷7⁸8₀°₁0₂²₃³₄4₅5₆6₇7₈8₉9₤£ℂCℇEℊg"sv
        u"ℋHℌHℍHℎhℐIℑIℒLℓlℕN℘PℙPℚQℛRℜRℝRℤZℨZ\u212AK\u212BÅℬBℭC℮eℯeℰEℱFℳMℴo←‹↑^→›↓v↔-↕|↨|∅Ø−-∓±∕/"sv
        u"∖\\∗*∘°∙•∟L∣|∶:∼~≪«≫»⋅·⌂¦⌃^\u2329<\u232A>─¦│-┌-┐¬└L┘-├+┤+┬T┴+┼+═=║¦╔-╗¬╚L╝-╠¦╣¦╦T╩¦╬+"sv
        u"▀-▄-█-░-▒-▓-■¦▬-▲^►>▼¡◄<○0◘•◙0☺O☻O☼0♀+♂>♠¦♣¦♥¦♦¦♪d♫d❘|❛‘❜’❝“❞”\u3000\u0020〈<〉>《«》»"sv
        u"〚[〛=〝\"〞\"〟„・·\u30FC—"sv },
    { 1255,
        u"Ê\u05BAÙ\uF88DÚ\uF88EÛ\uF88FÜ\uF890Ý\uF891Þ\uF892ß\uF893û\uF894ü\uF895ÿ\uF896"sv,
        u"¤₪ƑF‾?"sv },
    { 1256,
        {},
        u"ÀAÂAÇCÈEÉEÊEËEÎIÏIÔOÙUÛUÜU\u02CB?\u066B?\u066C?۰?۱?۲?۳?۴?۵?۶?۷?۸?۹?‾?\uFE73?"sv },
    { 1257,
        u"¡\uF8FC¥\uF8FD"sv,
        u"‾?"sv },
};
// clang-format on

} // namespace kortools::platform
