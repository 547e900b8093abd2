// SPDX-License-Identifier: MIT
#include "kortools/text/texts.h"

#include <algorithm>
#include <functional>

namespace kortools::text {
namespace {

// clang-format off
constexpr Text texts[] = {
    // Sizes and answers
    { 5175, L"Bytes", L"Octets" },
    { 5214, L": ", L" : " },
    { 5230, L"%.2f Gb", L"%.2f Go" },
    { 5238, L"%.2f Kb", L"%.2f Ko" },
    { 5272, L"%.2f Mb", L"%.2f Mo" },
    { 5293, L"No", L"Non" },
    { 5295, L"OK", L"OK" },

    // The syntax of search expressions, each a menu entry, in which && shows one &. The parenthesis
    // that 5315 does not close is left open on purpose.
    { 5310, L"! - table !leg = (table but not leg)", L"! - table !pied = (table mais pas pied)" },
    { 5311, L"&& - table && leg = (table and leg)", L"&& - table && pied = (table et pied)" },
    { 5312, L"? - Any single characters", L"? - Un caractère quelconque" },
    { 5313, L"\"\" - A group of words separated by one or more spaces",
            L"\"\" - Un groupe de mots séparés par un ou plusieurs espaces" },
    { 5314, L"^ - table ^ leg = (table or leg)", L"^ - table ^ pied = (table ou pied)" },
    { 5315, L"() - table (leg ^ drawer) = (table and (leg or drawer)",
            L"() - table (pied ^ tiroir) = (table et (pied ou tiroir)" },
    { 5316, L"* - zero or more of any character",
            L"* - zéro, un ou plusieurs caractères quelconques" },

    // Colours, units and answers
    { 5340, L"%d %d %d (RGB)", L"%d %d %d (RVB)" },
    { 5341, L"%d %d %d %d (RGBA)", L"%d %d %d %d (RVBA)" },
    { 5358, L"Centimeters|cm", L"Centimètres|cm" },
    { 5361, L"Foot|ft", L"Pied|ft" },
    { 5362, L"Inches|in", L"Pouces|in" },
    { 5363, L"Kilometer|km", L"Kilomètre|km" },
    { 5364, L"Meter|m", L"Mètre|m" },
    { 5365, L"Micrometer|µm", L"Micromètre|µm" },
    { 5366, L"Mile|mi", L"Mile|mi" },
    { 5367, L"Millimeters|mm", L"Millimètres|mm" },
    { 5368, L"Nanometer|nm", L"Nanomètre|nm" },
    { 5369, L"Pixels|px", L"Pixels|px" },
    { 5370, L"Undefined unit|no unit", L"Unité indéfinie|sans unité" },
    { 5371, L"Yard|yd", L"Yard|yd" },
    { 5392, L"Yes", L"Oui" },

    // Why a file name is not valid
    { 5501, L"You must enter a file or a directory name.",
            L"Vous devez saisir un nom de fichier ou de dossier." },
    { 5502, L"The name cannot contain the following characters: * ? \" < > |",
            L"Le nom ne peut pas contenir les caractères suivants : * ? \" < > |" },
    { 5503, L"The path of the filename must be absolute (C:\\tmp\\example.txt)",
            L"Le chemin du fichier doit être absolu (C:\\tmp\\exemple.txt)" },
    { 5504, L"Selected directory does not exist.",
            L"Le dossier sélectionné n'existe pas." },

    // Before a file is replaced
    { 5510, L"%1 already exists.\nDo you want to replace it?",
            L"%1 existe déjà.\nVoulez-vous le remplacer ?" },

    // The progress dialog: the time that an operation has taken, and the button that stops it
    { 5520, L"%M mn %S s elapsed", L"%M min %S s écoulées" },
    { 5521, L"Cancel", L"Annuler" },

    // Why a plug-in was refused
    { 5561, L"%1 was not found.", L"%1 est introuvable." },
    { 5562, L"%1 is not a library.", L"%1 n'est pas une bibliothèque." },
    { 5563, L"%1 is a library for another machine (%2).",
            L"%1 est une bibliothèque pour une autre machine (%2)." },
    { 5564, L"%1 is not a plug-in: it has no function %2.",
            L"%1 n'est pas un module complémentaire : il n'a pas de fonction %2." },
    { 5565, L"%1 is a plug-in of version %2, not %3.",
            L"%1 est un module complémentaire de version %2, et non %3." },
    { 5566, L"%1 has no function %2.", L"%1 n'a pas de fonction %2." },
    { 5567, L"%1 needs the library %2, which was not found.",
            L"%1 a besoin de la bibliothèque %2, qui est introuvable." },
    { 5568, L"%1 crashed while it was examined: %2.",
            L"%1 s'est arrêté brutalement pendant son examen : %2." },
    { 5569, L"%1 did not answer within %2 milliseconds.",
            L"%1 n'a pas répondu en %2 millisecondes." },
    { 5570, L"%1 could not be loaded: %2.", L"%1 n'a pas pu être chargé : %2." },
    { 5571, L"%1 could not be examined: the program %2 does not run.",
            L"%1 n'a pas pu être examiné : le programme %2 ne s'exécute pas." },
    { 5572, L"Plug-in refused: ", L"Module complémentaire refusé : " },
    // Which product and version this is
    { 5800, L"Product information\r\n", L"Informations sur le produit\r\n" },
    { 5801, L"------------------------------------------\r\n",
            L"------------------------------------------\r\n" },
    { 5802, L", SP %d.%d", L", SP %d.%d" },
    { 5803, L"64-bit version\r\n", L"Version 64 bits\r\n" },

    // The name of a file that has none
    { 61446, L"an unnamed file", L"un fichier sans nom" },

    // File errors: 61856 and the cause
    { 61856, L"No error occurred.", L"Aucune erreur ne s'est produite." },
    { 61857, L"An unknown error occurred while accessing %1.",
             L"Une erreur inconnue s'est produite lors de l'accès à %1." },
    { 61858, L"%1 was not found.", L"%1 est introuvable." },
    { 61859, L"%1 contains an incorrect path.", L"%1 contient un chemin incorrect." },
    { 61860, L"%1 could not be opened because there are too many open files.",
             L"Impossible d'ouvrir %1 : trop de fichiers sont ouverts." },
    { 61861, L"Access to %1 was denied.", L"L'accès à %1 a été refusé." },
    { 61862, L"An incorrect file handle was associated with %1.",
             L"Un descripteur de fichier incorrect a été associé à %1." },
    { 61863, L"%1 could not be removed because it is the current directory.",
             L"Impossible de supprimer %1 : c'est le dossier courant." },
    { 61864, L"%1 could not be created because the directory is full.",
             L"Impossible de créer %1 : le dossier est plein." },
    { 61865, L"Seek failed on %1.", L"Le positionnement dans %1 a échoué." },
    { 61866, L"A hardware input/output error was reported while accessing %1.",
             L"Une erreur matérielle d'entrée/sortie a été signalée lors de l'accès à %1." },
    { 61867, L"A sharing violation occurred while accessing %1.",
             L"Une violation de partage s'est produite lors de l'accès à %1." },
    { 61868, L"A locking violation occurred while accessing %1.",
             L"Une violation de verrouillage s'est produite lors de l'accès à %1." },
    { 61869, L"Disk full while accessing %1.", L"Disque plein lors de l'accès à %1." },
    { 61870, L"Attempted to access %1 past its end.",
             L"Tentative d'accès au-delà de la fin de %1." },

    // Archive errors: 61872 and the cause
    { 61872, L"No error occurred.", L"Aucune erreur ne s'est produite." },
    { 61873, L"An unknown error occurred while accessing %1.",
             L"Une erreur inconnue s'est produite lors de l'accès à %1." },
    { 61874, L"Attempted to write to %1, which is open for reading.",
             L"Tentative d'écriture dans %1, qui est ouvert en lecture." },
    { 61875, L"Attempted to access %1 past its end.",
             L"Tentative d'accès au-delà de la fin de %1." },
    { 61876, L"Attempted to read from %1, which is open for writing.",
             L"Tentative de lecture dans %1, qui est ouvert en écriture." },
    { 61877, L"%1 has a bad format.", L"Le format de %1 est incorrect." },
    { 61878, L"%1 contains an unexpected object.", L"%1 contient un objet inattendu." },
    { 61879, L"%1 contains an incorrect schema.", L"%1 contient un schéma incorrect." },
    { 61880, L"The buffer is full while accessing %1.",
             L"Le tampon est plein lors de l'accès à %1." },
};
// clang-format on
static_assert(
    std::ranges::adjacent_find(texts, std::greater_equal(), &Text::id) == std::ranges::end(texts));

} // namespace

std::span<Text const> get_texts()
{
    return texts;
}

} // namespace kortools::text
