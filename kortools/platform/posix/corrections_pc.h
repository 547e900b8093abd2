// SPDX-License-Identifier: MIT
// Corrections of the PC pages and of EBCDIC; code_page_corrections.h says what the two texts are.
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
inline constexpr CodePageCorrections pc_corrections[] = {
    { 37,
        {},
        u"ŸY"sv },
    { 437,
        u"æµ"sv,
        u"¤\u000F¦▌\u00A8\"©c\u00AD-®r\u00AF_³3\u00B4'\u00B8,¹1¾_ÀAÁAÂAÃAÈEÊEËEÌIÍIÎIÏIÐDÒOÓOÔO"sv
        u"ÕO×xØOÙUÚUÛUÝYÞ_ãaðdõoøoýyþ_ĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜG"sv
        u"ĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIıiĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏo"sv
        u"ŐOőoŒOœoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźz"sv
        u"ŻZżzŽZžzƀbƉDƑƒƗIƚlƟOƠOơoƩΣƫtƮTƯUưuƶzǀ|ǃ!ǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨK"sv
        u"ǩkǪOǫoǬOǭoǰjɡgɸφ\u02B9'\u02BA\"\u02BC'\u02C4^\u02C6^\u02C8'\u02C9─\u02CA'\u02CB`"sv
        u"\u02CD_\u02DA°\u02DC~\u0300`\u0301'\u0302^\u0303~\u0304─\u0308\"\u030A°\u030E\"\u0327,"sv
        u"\u0331_\u0332_\u037E;ΑαΔδΕεΠπΤτβßһh։:٪%\u2000\u0020\u2001\u0020\u2002\u0020"sv
        u"\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐-‑-–-—-‗_‘`’'‚,“\"”\"„,†+‡╪․·….‰%′'‵`"sv
        u"‹<›>⁄/⁰°⁴4⁵5⁶6⁷7⁸8₀0₁1₂2₃3₄4₅5₆6₇7₈8₉9₤£\u20DD\u0009ℂCℇEℊgℋHℌHℍHℎhℐIℑIℒLℓlℕN℘PℙPℚQℛRℜR"sv
        u"ℝR™TℤZ\u2126ΩℨZ\u212AK\u212BÅℬBℭC℮eℯeℰEℱFℳMℴo∅φ∑Σ−-∓±∕/∖\\∗*∘°∣|∶:∼~≪«≫»⋅·⌂\u007F⌃^"sv
        u"\u2329<\u232A>✓√❘|\u3000\u0020〇\u0009〈<〉>《«》»〚[〛]・·￨?￩?￪?￫?￬?￭?￮?"sv },
    { 500,
        {},
        u"ŸY"sv },
    { 720,
        u"\u0080\u0080\u0081\u0081\u0084\u0084\u0086\u0086\u008D\u008D\u008E\u008E\u008F\u008F"sv
        u"\u0090\u0090"sv,
        u"\uFE70\u064B\uFE71\u064B\uFE72\u064C\uFE74\u064D\uFE76\u064E\uFE77\u064E\uFE78\u064F"sv
        u"\uFE79\u064F\uFE7A\u0650\uFE7B\u0650\uFE7C\u0651\uFE7D\u0651\uFE7E\u0652\uFE7F\u0652"sv
        u"\uFE80\u0621\uFE81\u0622\uFE82\u0622\uFE83\u0623\uFE84\u0623\uFE85\u0624\uFE86\u0624"sv
        u"\uFE87\u0625\uFE88\u0625\uFE89\u0626\uFE8A\u0626\uFE8B\u0626\uFE8C\u0626\uFE8D\u0627"sv
        u"\uFE8E\u0627\uFE8F\u0628\uFE90\u0628\uFE91\u0628\uFE92\u0628\uFE93\u0629\uFE94\u0629"sv
        u"\uFE95\u062A\uFE96\u062A\uFE97\u062A\uFE98\u062A\uFE99\u062B\uFE9A\u062B\uFE9B\u062B"sv
        u"\uFE9C\u062B\uFE9D\u062C\uFE9E\u062C\uFE9F\u062C\uFEA0\u062C\uFEA1\u062D\uFEA2\u062D"sv
        u"\uFEA3\u062D\uFEA4\u062D\uFEA5\u062E\uFEA6\u062E\uFEA7\u062E\uFEA8\u062E\uFEA9\u062F"sv
        u"\uFEAA\u062F\uFEAB\u0630\uFEAC\u0630\uFEAD\u0631\uFEAE\u0631\uFEAF\u0632\uFEB0\u0632"sv
        u"\uFEB1\u0633\uFEB2\u0633\uFEB3\u0633\uFEB4\u0633\uFEB5\u0634\uFEB6\u0634\uFEB7\u0634"sv
        u"\uFEB8\u0634\uFEB9\u0635\uFEBA\u0635\uFEBB\u0635\uFEBC\u0635\uFEBD\u0636\uFEBE\u0636"sv
        u"\uFEBF\u0636\uFEC0\u0636\uFEC1\u0637\uFEC2\u0637\uFEC3\u0637\uFEC4\u0637\uFEC5\u0638"sv
        u"\uFEC6\u0638\uFEC7\u0638\uFEC8\u0638\uFEC9\u0639\uFECA\u0639\uFECB\u0639\uFECC\u0639"sv
        u"\uFECD\u063A\uFECE\u063A\uFECF\u063A\uFED0\u063A\uFED1\u0641\uFED2\u0641\uFED3\u0641"sv
        u"\uFED4\u0641\uFED5\u0642\uFED6\u0642\uFED7\u0642\uFED8\u0642\uFED9\u0643\uFEDA\u0643"sv
        u"\uFEDB\u0643\uFEDC\u0643\uFEDD\u0644\uFEDE\u0644\uFEDF\u0644\uFEE0\u0644\uFEE1\u0645"sv
        u"\uFEE2\u0645\uFEE3\u0645\uFEE4\u0645\uFEE5\u0646\uFEE6\u0646\uFEE7\u0646\uFEE8\u0646"sv
        u"\uFEE9\u0647\uFEEA\u0647\uFEEB\u0647\uFEEC\u0647\uFEED\u0648\uFEEE\u0648\uFEEF\u0649"sv
        u"\uFEF0\u0649\uFEF1\u064A\uFEF2\u064A\uFEF3\u064A\uFEF4\u064A"sv },
    { 737,
        {},
        u"\u037E;⌂\u007F♫\u000E♬?￩?￪?￫?￬?￮?"sv },
    { 775,
        {},
        u"¡!¥Yªa\u00AF─ºoÀAÃAÈEÊEÌIÏIÑNÒOÙUÛUàaãaècêeìiïiñnòoùuûuÿyĈCĉcĊCċcĔEĕeĜGĝgĞGğgĠGġgĤHĥh"sv
        u"ĦHħhĨIĩiĬIĭiİIıiĴJĵjŎOŏoŒOœoŜSŝsŦTŧtŨUũuŬUŭuŴWŵwŶYŷyŸYƀbƑFƒfƗIƚlƟOƠOơoƫtƮTƯUưuƶzǀ|ǃ!ǍA"sv
        u"ǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'\u02BA\"\u02BB'"sv
        u"\u02BC'\u02C4^\u02C6^\u02C8'\u02C9─\u02CB`\u02CD_\u02DA°\u02DC~\u0300`\u0302^\u0303~"sv
        u"\u0304─\u0305─\u030A°\u030E\"\u0331_\u0332_\u037E;βßμuһh։:٪%\u2000\u0020\u2001\u0020"sv
        u"\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐-‑-–-—-‘'‚'†┼‡┼․\u0007"sv
        u"…\u0007‰%′'″\"‵\"‹<›>⁄/⁰0⁴4⁵5⁶6⁷7⁸8₀0₁1₂2₃3₄4₅5₆6₇7₈8₉9₤LℂCℇEℊgℋHℌHℍHℎhℐIℑIℒLℓlℕN℘PℙP"sv
        u"ℚQℛRℜRℝR™tℤZℨZ\u212AK\u212BAℬBℭC℮eℯeℰEℱFℳMℴo∅O−-∓-∕/∖\\∗*∘°∣|∶:∼~≪«≫»⋅\u0007⌂\u007F⌃^"sv
        u"\u2329<\u232A>❘|❛'❜'❝\"❞\"\u3000\u0020〈<〉>《«》»〚[〛]〝\"〞\"〟\"・\u0007\u30FC_￩?"sv
        u"￪?￫?￬?￮?"sv },
    { 850,
        {},
        u"ĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪI"sv
        u"īiĬIĭiĮIįiİIĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏoŐOőoŒOœoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞS"sv
        u"şsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźzŻZżzŽZžzƀbƉDƑƒƗIƚlƟOƠOơoƩSƫtƮT"sv
        u"ƯUưuƶZǀ│ǃ!ǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡgɸø\u02B9\u00B4"sv
        u"\u02BA\"\u02BC'\u02C4^\u02C6^\u02C8'\u02C9─\u02CA\u00B4\u02CB'\u02CD_\u02DA°\u02DC~"sv
        u"\u0300'\u0301\u00B4\u0302^\u0303~\u0304\u00AF\u0305\u00AF\u0308\u00A8\u030A°\u030E\""sv
        u"\u0327\u00B8\u0331_\u0332_\u037E;ΓGΘØΣSΦFΩOαaβßδdεeμµπpσsτtφfһh։:٪%\u2000\u0020"sv
        u"\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐-‑-–-—-‘'’'‚'"sv
        u"“\"”\"„\"†┼‡╬․\u0007….‰%′\u00B4‵\u00B4‹<›>‾?⁄/⁰0⁴4⁵5⁶6⁷7⁸9\u207Fn₀0₁¹₂²₃³₄4₅5₆6₇7₈8₉9"sv
        u"₤£₧P\u20DDOℂCℇEℊgℋHℌHℍHℎhℐIℑIℒLℓlℕN℘PℙPℚQℛRℜRℝR™TℤZ\u2126OℨZ\u212AK\u212BÅℬBℭC℮eℯeℰEℱF"sv
        u"ℳMℴo∅Ø∑S−-∓±∕/∖/∗*∘°∙\u0007√V∞8∣│∩n∶:∼~≈~≡=≤=≥=≪«≫»⋅·⌂\u007F⌃^⌐¬⌠(⌡)\u2329<\u232A>╒╔╓╔"sv
        u"╕╗╖╗╘╚╙╚╛╝╜╝╞╠╟╠╡╣╢╣╤╦╥╦╧╩╨╩╪╬╫╬▌█▐█♫\u000E♬?✓V❘│\u3000\u0020〇O〈<〉>《«》»〚[〛]・·"sv
        u"￨?￩?￪?￫?￬?￭?￮?"sv },
    { 852,
        u"ª¬"sv,
        u"¡!¢c£L¥Y¦|©cªa®R\u00AF─±+²2³3µu·\u0007¹1ºo¼1½1¾3ÀAÃAÅAÆAÈEÊEÌIÏIÑNÒOÕOØOÙUÛUàaãaåaæaèc"sv
        u"êeìiïiñnòoõoøoùuûuÿyĀAāaĈCĉcĊCċcĒEēeĔEĕeĖEėeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİI"sv
        u"ıiĴJĵjĶKķkĻLļlŅNņnŌOōoŎOŏoŒOœoŖRŗrŜSŝsŦTŧtŨUũuŪUūuŬUŭuŲUųuŴWŵwŶYŷyŸYƀbƉĐƑFƒfƗIƚlƟOƠOơo"sv
        u"ƫtƮTƯUưuƶzǀ|ǃ!ǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'"sv
        u"\u02BA\"\u02BB'\u02BC'\u02C4^\u02C6^\u02C8'\u02C9─\u02CA\u00B4\u02CB`\u02CD_\u02DA°"sv
        u"\u02DC~\u0300`\u0301\u00B4\u0302^\u0303~\u0304─\u0305─\u0306\u02D8\u0307\u02D9"sv
        u"\u0308\u00A8\u030A°\u030C\u02C7\u030E\"\u0327\u00B8\u0331_\u0332_\u037E;βßμuһh։:٪%"sv
        u"\u2000\u0020\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐-"sv
        u"‑-–-—-‘'’'‚'“\"”\"„\"†┼‡┼․\u0007…\u0007‰%′'″\"‵\"‹<›>⁄/⁰0⁴4⁵5⁶6⁷7⁸8₀0₁1₂2₃3₄4₅5₆6₇7₈8"sv
        u"₉9₤LℂCℇEℊgℋHℌHℍHℎhℐIℑIℒLℓlℕN℘PℙPℚQℛRℜRℝR™tℤZℨZ\u212AK\u212BAℬBℭC℮eℯeℰEℱFℳMℴo∅O−-∓-∕/"sv
        u"∖\\∗*∘°∙\u0007∣|∶:∼~≪«≫»⋅\u0007⌂\u007F⌃^\u2329<\u232A>♫\u000E♬?❘|❛'❜'❝\"❞\""sv
        u"\u3000\u0020〈<〉>《«》»〚[〛]〝\"〞\"〟\"・\u0007\u30FC_￩?￪?￫?￬?￮?"sv },
    { 855,
        {},
        u"©c¬-®R°o±+µu·\u0007ÀAÁAÂAÃAÄAÅAÇCÈEÉEÊEËEÌIÍIÎIÏIÑNÒOÓOÔOÕOÖOØOÙUÚUÛUÜUÝYàaáaâaãaäaåa"sv
        u"çcèeéeêeëeìiíiîiïiñnòoóoôoõoöoøoùuúuûuüuÿyĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒEēeĔEĕe"sv
        u"ĖEėeĘEęeĚEěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņn"sv
        u"ŇNňnŌOōoŎOŏoŐOőoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶY"sv
        u"ŷyŸYŹZźzŻZżzŽZžzƀbƗIƚlƟOƠOơoƫtƮTƯUưuǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪO"sv
        u"ǫoǬOǭoǰj–-—-‘'’'‚'“\"”\"„\"†+‡+…:‰%‹<›>™T∙\u0007√v⌂\u007F╒╔╓╔╕╗╖╗╘╚╙╚╛╝╜╝╞╠╟╠╡╣╢╣╤╦╥╦"sv
        u"╧╩╨╩╪╬╫╬▌█▐█♠\u007F♣\u007F♥\u007F♦\u007F♪d♫d￩?￪?￫?￬?￮?"sv },
    { 857,
        u"Õ\uF8BBç\uF8BCò\uF8BD"sv,
        u"ÝYýyĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪI"sv
        u"īiĬIĭiĮIįiĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏoŐOőoŒOœoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŠSšs"sv
        u"ŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźzŻZżzŽZžzƀbƉDƑFƒfƗIƚlƟOƠOơoƫtƮTƯUưuƶz"sv
        u"ǀ|ǃ!ǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'\u02BA\"\u02BB'"sv
        u"\u02BC'\u02C4^\u02C6^\u02C7^\u02C8'\u02C9\u0016\u02CA\u00B4\u02CB`\u02CD_\u02D8^"sv
        u"\u02D9·\u02DA°\u02DB\u00B8\u02DC~\u02DD\u00A8\u0300`\u0301\u00B4\u0302^\u0303~\u0304─"sv
        u"\u0305─\u0306^\u0307·\u0308\u00A8\u030A°\u030C^\u030E\"\u0327\u00B8\u0331_\u0332_"sv
        u"\u037E;βßμµһh։:٪%\u2000\u0020\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020"sv
        u"\u2005\u0020\u2006\u0020‐-‑-–-—-‘'’'‚'“\"”\"„\"†┼‡┼․\u0007…\u0007‰%′'″\"‵\"‹<›>⁄/⁰0⁴4"sv
        u"⁵5⁶6⁷7⁸8₀0₁1₂2₃3₄4₅5₆6₇7₈8₉9₤LℂCℇEℊgℋHℌHℍHℎhℐIℑIℒLℓlℕN℘PℙPℚQℛRℜRℝR™tℤZℨZ\u212AK\u212BA"sv
        u"ℬBℭC℮eℯeℰEℱFℳMℴo∅O−-∓±∕/∖\\∗*∘°∙\u0007∣|∶:∼~≪«≫»⋅\u0007⌂\u007F⌃^\u2329<\u232A>❘|❛'❜'"sv
        u"❝\"❞\"\u3000\u0020〈<〉>《«》»〚[〛}〝\"〞\"〟\"・\u0007\u30FC_￩?￪?￫?￬?￮?"sv },
    { 860,
        u"æµ"sv,
        u"¤\u000F¥Y¦│\u00A8\"©c\u00AD_®r\u00AF\u0016³3\u00B4/\u00B8,¹1¾3ÄAÅAÆAËEÎIÏIÐDÖO×XØOÛUÝY"sv
        u"ÞTäaåaæaëeîiïiðdöoøoûuýyþtÿyĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜG"sv
        u"ĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIıiĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏo"sv
        u"ŐOőoŒOœoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŠ\\š|ŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZ"sv
        u"źzŻZżzŽZžzƀbƉDƑFƒfƗIƚlƟOƠOơoƩΣƫtƮTƯUưuƶzǀ|ǃ!ǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦG"sv
        u"ǧgǨKǩkǪOǫoǬOǭoǰjɡgɸf\u02B9'\u02BA\"\u02BC'\u02C4^\u02C6^\u02C8'\u02C9\u0016\u02CA/"sv
        u"\u02CB`\u02CD_\u02DA°\u02DC~\u0300`\u0301/\u0302^\u0303~\u0304\u0016\u0305\u0016"sv
        u"\u0308\"\u030A°\u030E\"\u0327,\u0331_\u0332_\u037E;ΑαΔδΕεΠπΤτβßһh։:٪%\u2000\u0020"sv
        u"\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐_‑_–_—_‗_‘'’'"sv
        u"‚,“\"”\"„\"†┼‡╪․\u0007….‰%′'‵`‹<›>⁄/⁰0⁴4⁵5⁶6⁷7⁸8₀0₁1₂²₃3₄4₅5₆6₇7₈8₉9₤£\u20DDOℂCℇEℊgℋH"sv
        u"ℌHℍHℎhℐIℑIℒLℓlℕN℘pℙPℚQℛRℜRℝR™tℤZ\u2126ΩℨZ\u212AK\u212BAℬBℭC℮eℯeℰEℱFℳMℴo∅O∑Σ−_∓±∕/∖\\∗*"sv
        u"∘°∣|∶:∼~≪«≫»⋅\u0007⌂\u007F⌃^⌐¬\u2329<\u232A>✓√❘│\u3000\u0020〇O〈<〉>《«》»〚[〛]"sv
        u"・\u0007￩?￪?￫?￬?￮?"sv },
    { 861,
        u"æµ"sv,
        u"¢c¤\u000F¥Y¦│\u00A8\"©cªa\u00AD_®r\u00AF\u0016³3\u00B4/\u00B8,¹1ºo¾3ÀAÂAÃAÈEÊEËEÌIÎIÏI"sv
        u"ÑNÒOÔOÕO×XÙUÛUãaìiîiïiñnòoõoùuÿyĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐÐđdĒEēeĔEĕeĖEėeĘEęeĚE"sv
        u"ěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIıiĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōo"sv
        u"ŎOŏoŐOőoŒOœoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸY"sv
        u"ŹZźzŻZżzŽZžzƀbƉÐƑƒƗIƚlƟOƠOơoƩ∩ƫtƮTƯUưuƶzǀ│ǃ!ǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦG"sv
        u"ǧgǨKǩkǪOǫoǬOǭoǰjɡgɸf\u02B9'\u02BA\"\u02BC'\u02C4^\u02C6^\u02C8'\u02C9\u0016\u02CA/"sv
        u"\u02CB`\u02CD_\u02DA°\u02DC~\u0300`\u0301/\u0302^\u0303~\u0304\u0016\u0305\u0016"sv
        u"\u0308\"\u030A°\u030E\"\u0327,\u0331_\u0332_\u037E;ΑαΔδΕεΠπΤτβßһh։:٪%\u2000\u0020"sv
        u"\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐-‑-–-—-‗_‘'’'"sv
        u"‚'“\"”\"„\"†┼‡╪․\u0007…\u0007‰%′'‵'‹<›>⁄/⁰0⁴4⁵5⁶6⁷7⁸8₀0₁1₂²₃3₄4₅5₆6₇7₈8₉9₤£\u20DDOℂCℇE"sv
        u"ℊgℋHℌHℍHℎhℐIℑIℒLℓlℕN℘pℙPℚQℛRℜRℝR™tℤZ\u2126ΩℨZ\u212AK\u212BÅℬBℭC℮eℯeℰEℱFℳMℴo∅O∑Σ−_∓±∕/"sv
        u"∖\\∗*∘°∣|∶:∼~≪«≫»⋅\u0007⌂\u007F⌃^\u2329<\u232A>✓√❘│\u3000\u0020〇O〈<〉>《«》»〚[〛]"sv
        u"・\u0007￩?￪?￫?￬?￮?"sv },
    { 862,
        u"æµ"sv,
        u"¤\u000F¦▌\u00A8\"©c\u00AD-®r\u00AF_³3\u00B4'\u00B8,¹1¾_ÀAÁAÂAÃAÈEÊEËEÌIÍIÎIÏIÐDÒOÓOÔO"sv
        u"ÕO×xØOÙUÚUÛUÝYÞ_ãaðdõoøoýyþ_ĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜG"sv
        u"ĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIıiĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏo"sv
        u"ŐOőoŒOœoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźz"sv
        u"ŻZżzŽZžzƀbƉDƑƒƗIƚlƟOƠOơoƩΣƫtƮTƯUưuƶzǀ|ǃ!ǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨK"sv
        u"ǩkǪOǫoǬOǭoǰjɡgɸφ\u02B9'\u02BA\"\u02BC'\u02C4^\u02C6^\u02C8'\u02C9─\u02CA'\u02CB`"sv
        u"\u02CD_\u02DA°\u02DC~\u0300`\u0301'\u0302^\u0303~\u0304─\u0308\"\u030A°\u030E\"\u0327,"sv
        u"\u0331_\u0332_\u037E;ΑαΔδΕεΠπΤτβßһh։:٪%\u2000\u0020\u2001\u0020\u2002\u0020"sv
        u"\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐-‑-–-—-‗_‘`’'‚,“\"”\"„,†+‡╪․·….‰%′'‵`"sv
        u"‹<›>⁄/⁰°⁴4⁵5⁶6⁷7⁸8₀0₁1₂2₃3₄4₅5₆6₇7₈8₉9₤£\u20DD\u0009ℂCℇEℊgℋHℌHℍHℎhℐIℑIℒLℓlℕN℘PℙPℚQℛRℜR"sv
        u"ℝR™TℤZ\u2126ΩℨZ\u212AKℬBℭC℮eℯeℰEℱFℳMℴo∅φ∑Σ−-∓±∕/∖\\∗*∘°∣|∶:∼~≪«≫»⋅·⌂\u007F⌃^\u2329<"sv
        u"\u232A>✓√❘|\u3000\u0020〇\u0009〈<〉>《«》»〚[〛]・·￩?￪?￫?￬?￮?"sv },
    { 863,
        u"æµ"sv,
        u"¡!¥Y©cªa\u00AD\u0016®r¹3ºoÁAÃAÄAÅAÆAÌIÍIÐDÑNÒOÓOÕOÖO×XØOÚUÝYÞTáaãaäaåaæaìiíiðdñnòoõoöo"sv
        u"øoýyþtÿyĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦH"sv
        u"ħhĨIĩiĪIīiĬIĭiĮIįiİIıiĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏoŐOőoŒOœoŔRŕrŖRŗrŘRřr"sv
        u"ŚSśsŜSŝsŞSşsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźzŻZżzŽZžzƀbƉDƑƒƗIƚlƟO"sv
        u"ƠOơoƩΣƫtƮTƯUưuƶzǀ│ǃ!ǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡgɸφ"sv
        u"\u02B9\"\u02BA'\u02BC'\u02C4^\u02C6^\u02C8'\u02C9\u0016\u02CA\u00B4\u02CB`\u02CD_"sv
        u"\u02DA°\u02DC~\u0300`\u0301\u00B4\u0302^\u0303~\u0304\u0016\u0305\u0016\u0308\u00A8"sv
        u"\u030A°\u030E\u00A8\u0327\u00B8\u0331_\u0332_\u037E;ΑαΔδΕεΠπΤτβßһh։:٪%\u2000\u0020"sv
        u"\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐-‑-–-—-‘'’'‚'"sv
        u"“\"”\"„\"†┼‡╪․\u0007…\u0007‰%′'‵'‹<›>⁄/⁰0⁴4⁵5⁶6⁷7⁸8₀0₁1₂²₃³₄4₅5₆6₇7₈8₉9₤£₧P\u20DDOℂCℇE"sv
        u"ℊgℋHℌHℍHℎhℐIℑIℒLℓlℕN℘pℙPℚQℛRℜRℝR™tℤZ\u2126ΩℨZ\u212AK\u212BAℬBℭC℮eℯeℰEℱFℳMℴo∅O∑Σ−_∓±∕/"sv
        u"∖\\∗*∘°∣|∶:∼~≪«≫»⋅\u0007⌂\u007F⌃^\u2329<\u232A>✓√❘│\u3000\u0020〇O〈<〉>《«》»〚[〛]"sv
        u"・\u0007￩?￪?￫?￬?￮?"sv },
    { 864,
        u"\u009B\u009B\u009C\u009C\u009F\u009F¦\uF8BE§\uF8BF×\uFEC1Ø\uFEC5ñ\u0651ÿ\uF8C0"sv,
        u"ΒβΦφ\u200B?⌂\u007F♫\u0003♬?\uFE7C?\uFEC3?\uFEC7?￩?￪?￫?￬?"sv },
    { 865,
        u"æµ"sv,
        u"¢c¥Y¦│\u00A8\"©c\u00AD_®r\u00AF\u0016³3\u00B4/\u00B8,¹1»>¾3ÀAÁAÂAÃAÈEÊEËEÌIÍIÎIÏIÐDÒO"sv
        u"ÓOÔOÕO×XÙUÚUÛUÝYÞTãaðdõoýyþtĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜG"sv
        u"ĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIıiĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏo"sv
        u"ŐOőoŒOœoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźz"sv
        u"ŻZżzŽZžzƀbƉDƑƒƗIƚlƟOƠOơoƩΣƫtƮTƯUưuƶzǀ│ǃ!ǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨK"sv
        u"ǩkǪOǫoǬOǭoǰjɡgɸφ\u02B9'\u02BA\"\u02BC'\u02C4^\u02C6^\u02C8'\u02C9\u0016\u02CA/\u02CB`"sv
        u"\u02CD_\u02DA°\u02DC~\u0300`\u0301/\u0302^\u0303~\u0304\u0016\u0305\u0016\u0308\""sv
        u"\u030A°\u030E\"\u0327,\u0331_\u0332_\u037E;ΑαΔδΕεΠπΤτβßһh։:٪%\u2000\u0020\u2001\u0020"sv
        u"\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐-‑-–-—-‗_‘'’'‚'“\"”\"„\""sv
        u"†┼‡╪․\u0007…\u0007‰%′'‵'‹<›>⁄/⁰0⁴4⁵5⁶6⁷7⁸8₀0₁1₂²₃3₄4₅5₆6₇7₈8₉9₤£\u20DDOℂCℇEℊgℋHℌHℍHℎh"sv
        u"ℐIℑIℒLℓlℕN℘pℙPℚQℛRℜRℝR™tℤZ\u2126ΩℨZ\u212AK\u212BÅℬBℭC℮eℯeℰEℱFℳMℴo∅O∑Σ−_∓±∕/∖\\∗*∘°∣|∶:"sv
        u"∼~≪«≫<⋅\u0007⌂\u007F⌃^\u2329<\u232A>✓√❘│\u3000\u0020〇O〈<〉>《«》>〚[〛]・\u0007￩?￪?"sv
        u"￫?￬?￮?"sv },
    { 866,
        {},
        u"¦│©c«<¬┐\u00AD-®R±+µч»>ÀAÁAÂAÃAÄAÅAÇCÈEÉEÊEËEÌIÍIÎIÏIÑNÒOÓOÔOÕOÖOØOÙUÚUÛUÜUÝYàaáaâaãa"sv
        u"äaåaçcèeéeêeëeìiíiîiïiñnòoóoôoõoöoøoùuúuûuüuýyÿyĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒE"sv
        u"ēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃN"sv
        u"ńnŅNņnŇNňnŌOōoŎOŏoŐOőoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųu"sv
        u"ŴWŵwŶYŷyŸYŹZźzŻZżzŽZžzƀbƗIƚlƟOƠOơoƫtƮTƯUưuǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧg"sv
        u"ǨKǩkǪOǫoǬOǭoǰj–-—-‘'’'‚'“\"”\"„\"†┼‡╪…:‰%‹<›>™T⌂\u007F￩?￪?￫?￬?￮?"sv },
    { 869,
        u"\u0080\u0080\u0081\u0081\u0082\u0082\u0083\u0083\u0084\u0084\u0085\u0085\u0087\u0087"sv
        u"\u0088·\u0093\u0093\u0094\u0094ï\u0384"sv,
        u"¤o¥Y®RµμÀAÁAÂAÃAÄAÅAÇCÈEÉEÊEËEÌIÍIÎIÏIÑNÒOÓOÔOÕOÖOØOÙUÚUÛUÜUÝYàaáaâaãaäaåaçcèeéeêeëeìi"sv
        u"íiîiïiñnòoóoôoõoöoøoùuúuûuüuýyÿyĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚE"sv
        u"ěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎO"sv
        u"ŏoŐOőoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźzŻZ"sv
        u"żzŽZžzƀbƑFƒfƗIƚlƟOƠOơoƫtƮTƯUưuǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭo"sv
        u"ǰj\u030D\u0384\u037E;\u0387?–\u0016—\u0016‚’“\"”\"„\"†+‡+…:‰%‹<›>™T⌂\u007F￩?￪?￫?￬?￮?"sv },
    { 875,
        u"Ü\u001Aá\u001Aì\u001Aí\u001Aü\u001Aý\u001A"sv,
        u"ŸY"sv },
    { 1026,
        u"\u009Aª"sv,
        u"ŸY₺?"sv },
};
// clang-format on

} // namespace kortools::platform
