// SPDX-License-Identifier: MIT
// Corrections of the ISO, KOI8, Mac and ASCII pages; code_page_corrections.h says what the two
// texts are.
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
inline constexpr CodePageCorrections iso_corrections[] = {
    { 10000,
        u"½\u2126"sv,
        u"Ω?\u2028?\u2029?"sv },
    { 10006,
        u"\u009C\u00AD\u00AF\u0387ÿ\uF8A0"sv,
        u"·?\u2028?\u2029?€?"sv },
    { 10007,
        u"¢¢¶∂ÿ¤"sv,
        u"Ґ?ґ?\u2028?\u2029?€?"sv },
    { 10029,
        {},
        u"\u2028?\u2029?"sv },
    { 10081,
        u"½\u2126"sv,
        u"Ω?\u2028?\u2029?"sv },
    { 20127,
        u"\u0080\u0000\u0081\u0001\u0082\u0002\u0083\u0003\u0084\u0004\u0085\u0005\u0086\u0006"sv
        u"\u0087\u0007\u0088\u0008\u0089\u0009\u008A\u000A\u008B\u000B\u008C\u000C\u008D\u000D"sv
        u"\u008E\u000E\u008F\u000F\u0090\u0010\u0091\u0011\u0092\u0012\u0093\u0013\u0094\u0014"sv
        u"\u0095\u0015\u0096\u0016\u0097\u0017\u0098\u0018\u0099\u0019\u009A\u001A\u009B\u001B"sv
        u"\u009C\u001C\u009D\u001D\u009E\u001E\u009F\u001F\u00A0\u0020¡!¢\"£#¤$¥%¦&§'\u00A8(©)ª*"sv
        u"«+¬,\u00AD-®.\u00AF/°0±1²2³3\u00B44µ5¶6·7\u00B88¹9º:»;¼<½=¾>¿?À@ÁAÂBÃCÄDÅEÆFÇGÈHÉIÊJËK"sv
        u"ÌLÍMÎNÏOÐPÑQÒRÓSÔTÕUÖV×WØXÙYÚZÛ[Ü\\Ý]Þ^ß_à`áaâbãcädåeæfçgèhéiêjëkìlímînïoðpñqòrósôtõu"sv
        u"öv÷wøxùyúzû{ü|ý}þ~ÿ\u007F"sv,
        u"\u00A0\u0020¡!¢c¤$¥Y¦|©Cªa«<\u00AD-®R²2³3·.\u00B8,¹1ºo»>ÀAÁAÂAÃAÄAÅAÆAÇCÈEÉEÊEËEÌIÍIÎI"sv
        u"ÏIÐDÑNÒOÓOÔOÕOÖOØOÙUÚUÛUÜUÝYàaáaâaãaäaåaæaçcèeéeêeëeìiíiîiïiñnòoóoôoõoöoøoùuúuûuüuýyÿy"sv
        u"ĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪI"sv
        u"īiĬIĭiĮIįiİIıiĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏoŐOőoŒOœoŔRŕrŖRŗrŘRřrŚSśsŜSŝs"sv
        u"ŞSşsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźzŻZżzŽZžzƀbƉDƑFƒfƗIƚlƟOƠOơoƫt"sv
        u"ƮTƯUưuƶzǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'\u02BA\""sv
        u"\u02BC'\u02C4^\u02C6^\u02C8'\u02CB`\u02CD_\u02DC~\u0300`\u0302^\u0303~\u030E\"\u0331_"sv
        u"\u0332_\u2000\u0020\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020"sv
        u"\u2006\u0020‐-‑-–-—-‘'’'‚,“\"”\"„\"•.….′'‵`‹<›>™T！!＂\"＃#＄$％%＆&＇'（(）)＊*＋+，,"sv
        u"－-．.／/０0１1２2３3４4５5６6７7８8９9：:；;＜<＝=＞>＠@ＡAＢBＣCＤDＥEＦFＧGＨHＩI"sv
        u"ＪJＫKＬLＭMＮNＯOＰPＱQＲRＳSＴTＵUＶVＷWＸXＹYＺZ［[＼\\］]\uFF3E^＿_\uFF40`ａaｂb"sv
        u"ｃcｄdｅeｆfｇgｈhｉiｊjｋkｌlｍmｎnｏoｐpｑqｒrｓsｔtｕuｖvｗwｘxｙyｚz｛{｜|｝}～~"sv },
    { 20866,
        {},
        u"¦│§\u0015«<¬┐\u00AD-®R±+µч¶\u0014»>ÀAÁAÂAÃAÄAÅAÇCÈEÉEÊEËEÌIÍIÎIÏIÑNÒOÓOÔOÕOÖOØOÙUÚUÛU"sv
        u"ÜUÝYàaáaâaãaäaåaçcèeéeêeëeìiíiîiïiñnòoóoôoõoöoøoùuúuûuüuýyÿyĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČC"sv
        u"čcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIĴJĵjĶKķkĹLĺlĻL"sv
        u"ļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏoŐOőoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭu"sv
        u"ŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźzŻZżzŽZžzƀbƗIƚlƟOƠOơoƫtƮTƯUưuǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜu"sv
        u"ǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰj–-—-‘'’'‚'“\"”\"„\"†┼‡╪•\u0007…:‰%‹<›>‼\u0013™T←\u001B"sv
        u"↑\u0018→\u001A↓\u0019↔\u001D↕\u0012↨\u0017∟\u001C⌂\u007F▬\u0016▲\u001E►\u0010▼\u001F"sv
        u"◄\u0011○\u0009◘\u0008◙\u000A☺\u0001☻\u0002☼\u000F♀\u000C♂\u000B♠\u0006♣\u0005♥\u0003"sv
        u"♦\u0004♪\u000D♫\u000E"sv },
    { 21866,
        u"®ў¾Ў"sv,
        u"¦│§\u0015«<¬┐\u00AD-®R±+µч¶\u0014»>ÀAÁAÂAÃAÄAÅAÇCÈEÉEÊEËEÌIÍIÎIÏIÑNÒOÓOÔOÕOÖOØOÙUÚUÛU"sv
        u"ÜUÝYàaáaâaãaäaåaçcèeéeêeëeìiíiîiïiñnòoóoôoõoöoøoùuúuûuüuýyÿyĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČC"sv
        u"čcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIĴJĵjĶKķkĹLĺlĻL"sv
        u"ļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏoŐOőoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭu"sv
        u"ŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźzŻZżzŽZžzƀbƗIƚlƟOƠOơoƫtƮTƯUưuǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜu"sv
        u"ǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰj–-—-‘'’'‚'“\"”\"„\"†┼‡╪•\u0007…:‰%‹<›>‼\u0013™T←\u001B"sv
        u"↑\u0018→\u001A↓\u0019↔\u001D↕\u0012↨\u0017∟\u001C⌂\u007F╝?╬?▬\u0016▲\u001E►\u0010"sv
        u"▼\u001F◄\u0011○\u0009◘\u0008◙\u000A☺\u0001☻\u0002☼\u000F♀\u000C♂\u000B♠\u0006♣\u0005"sv
        u"♥\u0003♦\u0004♪\u000D♫\u000E"sv },
    { 28591,
        {},
        u"ĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪI"sv
        u"īiĬIĭiĮIįiİIıiĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏoŐOőoŒOœoŔRŕrŖRŗrŘRřrŚSśsŜSŝs"sv
        u"ŞSşsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźzŻZżzŽZžzƀbƉDƑFƒfƗIƚlƟOƠOơoƫt"sv
        u"ƮTƯUưuƶzǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'\u02BA\""sv
        u"\u02BC'\u02C4^\u02C6^\u02C8'\u02CB`\u02CD_\u02DC~\u0300`\u0302^\u0303~\u030E\"\u0331_"sv
        u"\u0332_\u2000\u0020\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020"sv
        u"\u2006\u0020‐-‑-–-—-‘'’'‚,“\"”\"„\"•.….′'‵`‹<›>™T！!＂\"＃#＄$％%＆&＇'（(）)＊*＋+，,"sv
        u"－-．.／/０0１1２2３3４4５5６6７7８8９9：:；;＜<＝=＞>＠@ＡAＢBＣCＤDＥEＦFＧGＨHＩI"sv
        u"ＪJＫKＬLＭMＮNＯOＰPＱQＲRＳSＴTＵUＶVＷWＸXＹYＺZ［[＼\\］]\uFF3E^＿_\uFF40`ａaｂb"sv
        u"ｃcｄdｅeｆfｇgｈhｉiｊjｋkｌlｍmｎnｏoｐpｑqｒrｓsｔtｕuｖvｗwｘxｙyｚz｛{｜|｝}～~"sv },
    { 28592,
        {},
        u"¡!¢c¥Y¦|©Cªa«<®R²2³3¶?·.¹1ºo»>ÀAÃAÅAÆAÈEÊEÌIÏIÐDÑNÒOÕOØOÙUÛUàaãaåaæaèeêeìiïiñnòoõoøoùu"sv
        u"ûuÿyĀAāaĈCĉcĊCċcĒEēeĔEĕeĖEėeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIıiĴJĵjĶKķkĻLļlŅN"sv
        u"ņnŌOōoŎOŏoŒOœoŖRŗrŜSŝsŦTŧtŨUũuŪUūuŬUŭuŲUųuŴWŵwŶYŷyŸYƀbƉDƑFƒfƗIƚlƟOƠOơoƫtƮTƯUưuƶzǍAǎaǏI"sv
        u"ǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'\u02BA\"\u02BC'\u02C4^"sv
        u"\u02C6^\u02C8'\u02CB`\u02CD_\u02DC~\u0300`\u0302^\u0303~\u030E\"\u0331_\u0332_"sv
        u"\u2000\u0020\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐-"sv
        u"‑-–-—-‘'’'‚,“\"”\"„\"•.….′'‵`‹<›>‼?™T←?↑?↓?↔?↕?↨?∟?─?│?┌?┐?└?┘?├?┤?┬?┴?┼?═?║?╔?╗?╚?╝?"sv
        u"╠?╣?╦?╩?╬?▀?▄?█?░?▒?▓?▬?▲?►?▼?◄?○?◘?◙?☺?☻?☼?♀?♂?♠?♣?♥?♦?♪?♬?￨?￩?￪?￬?￮?"sv },
    { 28593,
        u"¥\uF7F5®\uF7F6¾\uF7F7Ã\uF7F8Ð\uF7F9ã\uF7FAð\uF7FB"sv,
        u"¡!¢c¥Y¦|©Cªa«<®R¹1ºo»>ÃAÅAÆAÐDÕOØOÝYãaåaæaõoøoýyÿyĀAāaĂAăaĄAąaĆCćcČCčcĎDďdĐDđdĒEēeĔEĕe"sv
        u"ĖEėeĘEęeĚEěeĢGģgĨIĩiĪIīiĬIĭiĮIįiĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏoŐOőoŒOœoŔRŕrŖR"sv
        u"ŗrŘRřrŚSśsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźzŽZžzƀbƉDƑFƒfƗIƚlƟOƠOơoƫtƮT"sv
        u"ƯUưuƶzǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'\u02BA\""sv
        u"\u02BC'\u02C4^\u02C6^\u02C8'\u02CB`\u02CD_\u02DC~\u0300`\u0302^\u0303~\u030E\"\u0331_"sv
        u"\u0332_\u2000\u0020\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020"sv
        u"\u2006\u0020‐-‑-–-—-‘'’'‚,“\"”\"„\"•.….′'‵`‹<›>™T"sv },
    { 28594,
        {},
        u"¡!¢c¥Y¦|©Cªa«<®R²2³3·.¹1ºo»>ÀAÇCÈEÊEÌIÏIÐDÑNÒOÓOÙUÝYàaçcèeêeìiïiñnòoóoùuýyÿyĂAăaĆCćcĈC"sv
        u"ĉcĊCċcĎDďdĔEĕeĚEěeĜGĝgĞGğgĠGġgĤHĥhĦHħhĬIĭiİIıiĴJĵjĹLĺlĽLľlŁLłlŃNńnŇNňnŎOŏoŐOőoŒOœoŔRŕr"sv
        u"ŘRřrŚSśsŜSŝsŞSşsŢTţtŤTťtŬUŭuŮUůuŰUűuŴWŵwŶYŷyŸYŹZźzŻZżzƀbƉDƑFƒfƗIƚlƟOƠOơoƫtƮTƯUưuƶzǍAǎa"sv
        u"ǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'\u02BA\"\u02BC'\u02C4^"sv
        u"\u02C6^\u02C8'\u02CB`\u02CD_\u02DC~\u0300`\u0302^\u0303~\u030E\"\u0331_\u0332_"sv
        u"\u2000\u0020\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐-"sv
        u"‑-–-—-‘'’'‚,“\"”\"„\"•.….′'‵`‹<›>™T"sv },
    { 28595,
        {},
        u"¡!¢c¤$¥Y¦|©Cªa«<®R²2³3·.\u00B8,¹1ºo»>ÀAÁAÂAÃAÄAÅAÆAÇCÈEÉEÊEËEÌIÍIÎIÏIÐDÑNÒOÓOÔOÕOÖOØO"sv
        u"ÙUÚUÛUÜUÝYàaáaâaãaäaåaæaçcèeéeêeëeìiíiîiïiñnòoóoôoõoöoøoùuúuûuüuýyÿyĀAāaĂAăaĄAąaĆCćcĈC"sv
        u"ĉcĊCċcČCčcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIıiĴJĵj"sv
        u"ĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏoŐOőoŒOœoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŠSšsŢTţtŤTťtŦT"sv
        u"ŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźzŻZżzŽZžzƀbƉDƑFƒfƗIƚlƟOƠOơoƫtƮTƯUưuƶzǍAǎaǏIǐiǑO"sv
        u"ǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'\u02BA\"\u02BC'\u02C4^\u02C6^"sv
        u"\u02C8'\u02CB`\u02CD_\u02DC~\u0300`\u0302^\u0303~\u030E\"\u0331_\u0332_\u2000\u0020"sv
        u"\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐-‑-–-—-‘'’'‚,"sv
        u"“\"”\"„\"•.….′'‵`‹<›>™T"sv },
    { 28596,
        u"¡\uF7C8¢\uF7C9£\uF7CA¥\uF7CB¦\uF7CC§\uF7CD\u00A8\uF7CE©\uF7CFª\uF7D0«\uF7D1®\uF7D2"sv
        u"\u00AF\uF7D3°\uF7D4±\uF7D5²\uF7D6³\uF7D7\u00B4\uF7D8µ\uF7D9¶\uF7DA·\uF7DB\u00B8\uF7DC"sv
        u"¹\uF7DDº\uF7DE¼\uF7DF½\uF7E0¾\uF7E1À\uF7E2Û\uF7E3Ü\uF7E4Ý\uF7E5Þ\uF7E6ß\uF7E7ó\uF7E8"sv
        u"ô\uF7E9õ\uF7EAö\uF7EB÷\uF7ECø\uF7EDù\uF7EEú\uF7EFû\uF7F0ü\uF7F1ý\uF7F2þ\uF7F3ÿ\uF7F4"sv,
        u"¡!¢c¥Y¦|©Cªa«<®R²2³3·.\u00B8,¹1ºo»>ÀAÁAÂAÃAÄAÅAÆAÇCÈEÉEÊEËEÌIÍIÎIÏIÐDÑNÒOÓOÔOÕOÖOØOÙU"sv
        u"ÚUÛUÜUÝYàaáaâaãaäaåaæaçcèeéeêeëeìiíiîiïiñnòoóoôoõoöoøoùuúuûuüuýyÿyĀAāaĂAăaĄAąaĆCćcĈCĉc"sv
        u"ĊCċcČCčcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIıiĴJĵjĶK"sv
        u"ķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏoŐOőoŒOœoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŠSšsŢTţtŤTťtŦTŧt"sv
        u"ŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźzŻZżzŽZžzƀbƉDƑFƒfƗIƚlƟOƠOơoƫtƮTƯUưuƶzǍAǎaǏIǐiǑOǒo"sv
        u"ǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'\u02BA\"\u02BC'\u02C4^\u02C6^"sv
        u"\u02C8'\u02CB`\u02CD_\u02DC~\u0300`\u0302^\u0303~\u030E\"\u0331_\u0332_\u2000\u0020"sv
        u"\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐-‑-–-—-‘'’'‚,"sv
        u"“\"”\"„\"•.….′'‵`‹<›>™T"sv },
    { 28597,
        u"¡\u02BD¢\u02BC¤\uF7C2¥\uF7C3ª\uF7C4®\uF7C5Ò\uF7C6ÿ\uF7C7"sv,
        u"¡!¢c¤$¥Yªa®R\u00B8,¹1ºoÀAÁAÂAÃAÄAÅAÆAÇCÈEÉEÊEËEÌIÍIÎIÏIÐDÑNÒOÓOÔOÕOÖOØOÙUÚUÛUÜUÝYàaáa"sv
        u"âaãaäaåaæaçcèeéeêeëeìiíiîiïiñnòoóoôoõoöoøoùuúuûuüuýyÿyĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďd"sv
        u"ĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIıiĴJĵjĶKķkĹLĺlĻLļlĽL"sv
        u"ľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏoŐOőoŒOœoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭu"sv
        u"ŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźzŻZżzŽZžzƀbƉDƑFƒfƗIƚlƟOƠOơoƫtƮTƯUưuƶzǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘu"sv
        u"ǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'\u02BA\"\u02C4^\u02C6^\u02C8'\u02CB`\u02CD_"sv
        u"\u02DC~\u0300`\u0302^\u0303~\u030E\"\u0331_\u0332_\u037A?\u2000\u0020\u2001\u0020"sv
        u"\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐-‑-–-—-‘'’'‚,“\"”\"„\"•."sv
        u"….′'‵`‹<›>€?₯?™T"sv },
    { 28598,
        u"¡\uF79C\u00AF‾¿\uF79DÀ\uF79EÁ\uF79FÂ\uF7A0Ã\uF7A1Ä\uF7A2Å\uF7A3Æ\uF7A4Ç\uF7A5È\uF7A6"sv
        u"É\uF7A7Ê\uF7A8Ë\uF7A9Ì\uF7AAÍ\uF7ABÎ\uF7ACÏ\uF7ADÐ\uF7AEÑ\uF7AFÒ\uF7B0Ó\uF7B1Ô\uF7B2"sv
        u"Õ\uF7B3Ö\uF7B4×\uF7B5Ø\uF7B6Ù\uF7B7Ú\uF7B8Û\uF7B9Ü\uF7BAÝ\uF7BBÞ\uF7BCû\uF7BDü\uF7BE"sv
        u"ý\uF7BFþ\uF7C0ÿ\uF7C1"sv,
        u"¡!ªa\u00AF?ºoÀAÁAÂAÃAÄAÅAÆAÇCÈEÉEÊEËEÌIÍIÎIÏIÐDÑNÒOÓOÔOÕOÖOØOÙUÚUÛUÜUÝYàaáaâaãaäaåaæa"sv
        u"çcèeéeêeëeìiíiîiïiñnòoóoôoõoöoøoùuúuûuüuýyÿyĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒEēeĔE"sv
        u"ĕeĖEėeĘEęeĚEěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįiİIıiĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńn"sv
        u"ŅNņnŇNňnŌOōoŎOŏoŐOőoŒOœoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŠSšsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲU"sv
        u"ųuŴWŵwŶYŷyŸYŹZźzŻZżzŽZžzƀbƉDƑFƒfƗIƚlƟOƠOơoƫtƮTƯUưuƶzǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞA"sv
        u"ǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'\u02BA\"\u02BC'\u02C4^\u02C6^\u02C8'\u02CB`\u02CD_"sv
        u"\u02DC~\u0300`\u0302^\u0303~\u030E\"\u0331_\u0332_\u2000\u0020\u2001\u0020\u2002\u0020"sv
        u"\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020\u200E?\u200F?‐-‑-–-—-‘'’'‚,“\"”\"„\""sv
        u"•.….′'‵`‹<›>™T"sv },
    { 28599,
        {},
        u"ÐDÝYýyĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐDđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĠGġgĢGģgĤHĥhĦHħhĨIĩi"sv
        u"ĪIīiĬIĭiĮIįiĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏoŐOőoŒOœoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŠS"sv
        u"šsŢTţtŤTťtŦTŧtŨUũuŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŸYŹZźzŻZżzŽZžzƀbƉDƑFƒfƗIƚlƟOƠOơoƫtƮTƯUưu"sv
        u"ƶzǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'\u02BA\"\u02BC'"sv
        u"\u02C4^\u02C6^\u02C8'\u02CB`\u02CD_\u02DC~\u0300`\u0302^\u0303~\u030E\"\u0331_\u0332_"sv
        u"\u2000\u0020\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐-"sv
        u"‑-–-—-‘'’'‚,“\"”\"„\"•.….′'‵`‹<›>™T"sv },
    { 28603,
        {},
        u"ªaºoÀAÁAÂAÃAÇCÈEÊEËEÌIÍIÎIÏIÑNÒOÔOÙUÚUÛUÝYàaáaâaãaçcèeêeëeìiíiîiïiñnòoôoùuúuûuýyÿyĂAăa"sv
        u"ĈCĉcĊCċcĎDďdĔEĕeĚEěeĜGĝgĞGğgĠGġgĤHĥhĨIĩiĬIĭiİIĴJĵjĹLĺlĽLľlŇNňnŎOŏoŐOőoŔRŕrŘRřrŜSŝsŞSşs"sv
        u"ŢTţtŤTťtŨUũuŬUŭuŮUůuŰUűuŴWŵwŶYŷyŸYſsƠOơoƯUưuǍAǎaǏIǐiǑOǒoǓUǔuǕÜǖüǗÜǘüǙÜǚüǛÜǜüǞÄǟäǠAǡaǢÆ"sv
        u"ǣæǦGǧgǨKǩkǪOǫoǬOǭoǰjǴGǵgǸNǹnǺÅǻåǼÆǽæǾØǿøȀAȁaȂAȃaȄEȅeȆEȇeȈIȉiȊIȋiȌOȍoȎOȏoȐRȑrȒRȓrȔUȕuȖU"sv
        u"ȗuȘSșsȚTțtȞHȟhȦAȧaȨEȩeȪÖȫöȬÕȭõȮOȯoȰOȱoȲYȳy\u02B0h\u02B2j\u02B3r\u02B7w\u02B8y\u02E1l"sv
        u"\u02E2s\u02E3x\u037E;\u0387·ḀAḁaḂBḃbḄBḅbḆBḇbḈCḉcḊDḋdḌDḍdḎDḏdḐDḑdḒDḓdḔĒḕēḖĒḗēḘEḙeḚEḛeḜE"sv
        u"ḝeḞFḟfḠGḡgḢHḣhḤHḥhḦHḧhḨHḩhḪHḫhḬIḭiḮIḯiḰKḱkḲKḳkḴKḵkḶLḷlḸLḹlḺLḻlḼLḽlḾMḿmṀMṁmṂMṃmṄNṅnṆNṇn"sv
        u"ṈNṉnṊNṋnṌÕṍõṎÕṏõṐŌṑōṒŌṓōṔPṕpṖPṗpṘRṙrṚRṛrṜRṝrṞRṟrṠSṡsṢSṣsṤŚṥśṦŠṧšṨSṩsṪTṫtṬTṭtṮTṯtṰTṱtṲU"sv
        u"ṳuṴUṵuṶUṷuṸUṹuṺŪṻūṼVṽvṾVṿvẀWẁwẂWẃwẄWẅwẆWẇwẈWẉwẊXẋxẌXẍxẎYẏyẐZẑzẒZẓzẔZẕzẖhẗtẘwẙyẛsẠAạaẢA"sv
        u"ảaẤAấaẦAầaẨAẩaẪAẫaẬAậaẮAắaẰAằaẲAẳaẴAẵaẶAặaẸEẹeẺEẻeẼEẽeẾEếeỀEềeỂEểeỄEễeỆEệeỈIỉiỊIịiỌOọo"sv
        u"ỎOỏoỐOốoỒOồoỔOổoỖOỗoỘOộoỚOớoỜOờoỞOởoỠOỡoỢOợoỤUụuỦUủuỨUứuỪUừuỬUửuỮUữuỰUựuỲYỳyỴYỵyỶYỷyỸY"sv
        u"ỹy\u1FEF`\u2000\u0020\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020"sv
        u"\u2006\u0020\u2007\u0020\u2008\u0020\u2009\u0020\u200A\u0020․.\u202F\u0020\u205F\u0020"sv
        u"⁰0\u2071i⁴4⁵5⁶6⁷7⁸8⁹9⁺+⁼=⁽(⁾)\u207Fn₀0₁1₂2₃3₄4₅5₆6₇7₈8₉9₊+₌=₍(₎)ℂCℊgℋHℌHℍHℎhℐIℑIℒLℓlℕN"sv
        u"ℙPℚQℛRℜRℝRℤZℨZ\u212AK\u212BÅℬBℭCℯeℰEℱFℳMℴoℹiⅅDⅆdⅇeⅈiⅉjⅠIⅤVⅩXⅬLⅭCⅮDⅯMⅰiⅴvⅹxⅼlⅽcⅾdⅿm≠=≮<"sv
        u"≯>①1②2③3④4⑤5⑥6⑦7⑧8⑨9ⒶAⒷBⒸCⒹDⒺEⒻFⒼGⒽHⒾIⒿJⓀKⓁLⓂMⓃNⓄOⓅPⓆQⓇRⓈSⓉTⓊUⓋVⓌWⓍXⓎYⓏZⓐaⓑbⓒcⓓdⓔeⓕfⓖg"sv
        u"ⓗhⓘiⓙjⓚkⓛlⓜmⓝnⓞoⓟpⓠqⓡrⓢsⓣtⓤuⓥvⓦwⓧxⓨyⓩz⓪0\u3000\u0020﬩+︳_︴_︵(︶)︷{︸}﹍_﹎_﹏_﹐,"sv
        u"﹒.﹔;﹕:﹗!﹙(﹚)﹛{﹜}﹟#﹠&﹡*﹢+﹣-﹤<﹥>﹦=﹨\\﹩$﹪%﹫@￠¢￡£￢¬￤¦"sv },
    { 28605,
        {},
        u"¦|ĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐÐĒEēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪI"sv
        u"īiĬIĭiĮIįiİIıiĴJĵjĶKķkĸkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŊNŋnŌOōoŎOŏoŐOőoŔRŕrŖRŗrŘRřrŚSśsŜS"sv
        u"ŝsŞSşsŢTţtŤTťtŦTŧtŨTũtŪUūuŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŹZźzŻZżzƀbƉDƑFƒfƗIƚlƟOƠOơoƫtƮTƯUưuƶz"sv
        u"ǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞAǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡg\u02B9'\u02BA\"\u02BC'"sv
        u"\u02C4^\u02C6^\u02C8'\u02CB`\u02CD_\u02DC~\u0300`\u0302^\u0303~\u030E\"\u0331_\u0332_"sv
        u"\u2000\u0020\u2001\u0020\u2002\u0020\u2003\u0020\u2004\u0020\u2005\u0020\u2006\u0020‐-"sv
        u"‑-–-—-‘'’'‚,“\"”\"„\"•.….′'‵`‹<›>™T"sv },
};
// clang-format on

} // namespace kortools::platform
