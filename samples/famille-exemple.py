#!/usr/bin/env python3
"""Writes famille-exemple.ged, the sample family for newcomers: a fictional
Burgundian family over six generations, in the GEDCOM dialect that Sylvane
exports (CHAR ANSI: Windows-1252 bytes, CR LF line ends).

Events are SOUR records cited by each person with a role, documents are NOTE
records, long texts are cut at 60 columns with CONC. Run it again after a
change of the data below: python3 samples/famille-exemple.py
"""
import os

# id, first names, family name, sex, birth (date, place), death (date, place), trade, note
P = [
    (1, "Pierre", "LEBRUN", "M", ("3 FEB 1692", "Saint-Aubin"), ("17 NOV 1758", "Saint-Aubin"), "laboureur", ""),
    (2, "Marie", "GIRARD", "F", ("ABT 1695", "Vandenesse"), ("BEF 1740", "Saint-Aubin"), "", ""),
    (3, "Jeanne", "ROUX", "F", ("11 MAY 1710", "Pont-de-Pany"), ("2 JAN 1781", "Saint-Aubin"), "", "Seconde \xe9pouse de Pierre Lebrun, veuf depuis peu."),
    (4, "Jean", "LEBRUN", "M", ("5 MAR 1718", "Vandenesse"), ("BET 1788 AND 1792", "Saint-Aubin"), "vigneron", ""),
    (5, "Anne", "LEBRUN", "F", ("22 JUN 1721", "Vandenesse"), ("1779", "Gissey"), "", ""),
    (6, "Claude", "LEBRUN", "M", ("14 DEC 1742", "Saint-Aubin"), ("9 MAR 1810", "Dijon"), "tonnelier", ""),
    (7, "Fran\xe7oise", "MOREL", "F", ("1722", "Gissey"), ("", ""), "", ""),
    (8, "Honor\xe9", "BERTHIER", "M", ("ABT 1715", "Gissey"), ("", ""), "tisserand", ""),
    (9, "Nicolas", "LEBRUN", "M", ("2 JAN 1744", "Saint-Aubin"), ("26 AUG 1801", "Saint-Aubin"), "vigneron", ""),
    (10, "Genevi\xe8ve", "LEBRUN", "F", ("18 SEP 1747", "Saint-Aubin"), ("", ""), "", ""),
    (11, "\xc9tienne", "LEBRUN", "M", ("1 APR 1750", "Saint-Aubin"), ("AFT 1800", ""), "soldat",
     "Parti aux arm\xe9es en 1792 avec le bataillon de la C\xf4te-d'Or ; la famille le dit mort en \xc9gypte, sans preuve. Sa derni\xe8re lettre est dat\xe9e de Toulon."),
    (12, "Th\xe9r\xe8se", "BERTHIER", "F", ("1741", "Gissey"), ("", ""), "", ""),
    (13, "Agn\xe8s", "PERNOT", "F", ("1745", "Fleurey"), ("", ""), "", ""),
    (14, "Beno\xeet", "LEBRUN", "M", ("3 MAY 1766", "Dijon"), ("", ""), "tonnelier", ""),
    (15, "Marguerite", "COLLIN", "F", ("1746", "Sombernon"), ("", ""), "", ""),
    (16, "Jacques", "DURAND", "M", ("1744", "Pont-de-Pany"), ("", ""), "mar\xe9chal-ferrant", ""),
    (17, "Joseph", "LEBRUN", "M", ("19 MAR 1769", "Saint-Aubin"), ("1832", "Saint-Aubin"), "vigneron", ""),
    (18, "C\xe9cile", "LEBRUN", "F", ("8 JUL 1772", "Saint-Aubin"), ("", ""), "", "\xc9pouse son cousin germain Louis Durand, avec dispense de consanguinit\xe9 du deuxi\xe8me au deuxi\xe8me degr\xe9."),
    (19, "Louis", "DURAND", "M", ("12 OCT 1771", "Pont-de-Pany"), ("", ""), "mar\xe9chal-ferrant", ""),
    (20, "Madeleine", "DURAND", "F", ("1774", "Pont-de-Pany"), ("", ""), "", ""),
    (21, "Fran\xe7ois", "GAUTHIER", "M", ("1738", "Gissey"), ("", ""), "meunier", ""),
    (22, "Edme", "GAUTHIER", "M", ("1765", "Gissey"), ("", ""), "meunier", ""),
    (23, "Aim\xe9e", "RAVIER", "F", ("1770", "Dijon"), ("", ""), "", ""),
    (24, "Zo\xe9", "LEBRUN", "F", ("@#DFRENCH R@ 3 FLOR 2", "Dijon"), ("", ""), "", "N\xe9e le 3 flor\xe9al an II, baptis\xe9e en cachette."),
    (25, "L\xe9on", "LEBRUN", "M", ("1797", "Dijon"), ("", ""), "", ""),
    (26, "Jean-Baptiste", "DURAND", "M", ("2 FEB 1797", "Pont-de-Pany"), ("", ""), "mar\xe9chal-ferrant", ""),
    (27, "Ana\xefs", "DURAND", "F", ("1800", "Pont-de-Pany"), ("", ""), "", ""),
    (28, "Louise", "MARTIN", "F", ("1773", "Velars"), ("1805", "Saint-Aubin"), "", ""),
    (29, "Catherine", "BONNOT", "F", ("1780", "Velars"), ("", ""), "", ""),
    (30, "Pierre", "LEBRUN", "M", ("1795", "Saint-Aubin"), ("", ""), "vigneron", ""),
    (31, "Marie", "LEBRUN", "F", ("1799", "Saint-Aubin"), ("", ""), "", ""),
    (32, "No\xebl", "LEBRUN", "M", ("25 DEC 1807", "Saint-Aubin"), ("", ""), "", ""),
    (33, "Antoine", "PETIT", "M", ("1770", "Velars"), ("", ""), "charron", ""),
    (34, "Victor", "PETIT", "M", ("1798", "Velars"), ("", ""), "", ""),
    (35, "Ad\xe8le", "GARNIER", "F", ("1801", "Dijon"), ("", ""), "", ""),
    (36, "\xc9mile", "LEBRUN", "M", ("14 JUL 1824", "Dijon"), ("3 JUN 1890", "Dijon"), "instituteur", ""),
    (37, "H\xe9l\xe8ne", "LEBRUN", "F", ("1827", "Dijon"), ("", ""), "", ""),
    (38, "Julie", "FAIVRE", "F", ("1802", "Fleurey"), ("", ""), "", ""),
    (39, "Sophie", "ROYER", "F", ("1798", "Velars"), ("", ""), "", ""),
    (40, "Eug\xe8ne", "DURAND", "M", ("1825", "Pont-de-Pany"), ("1890", "Pont-de-Pany"), "cantonnier", ""),
    (41, "Rose", "DURAND", "F", ("1829", "Pont-de-Pany"), ("", ""), "", ""),
    (42, "Auguste", "LEBRUN", "M", ("1820", "Saint-Aubin"), ("", ""), "", ""),
    (43, "Jos\xe9phine", "MAILLARD", "F", ("1828", "Dijon"), ("", ""), "", ""),
    (44, "Charles", "VOISIN", "M", ("1822", "Beaune"), ("", ""), "notaire", ""),
    (45, "Henri", "LEBRUN", "M", ("6 APR 1852", "Dijon"), ("", ""), "employ\xe9 des chemins de fer", ""),
    (46, "Berthe", "LEBRUN", "F", ("1855", "Dijon"), ("", ""), "", ""),
    (47, "Alice", "VOISIN", "F", ("1850", "Beaune"), ("", ""), "", ""),
    (48, "Marthe", "DUPUIS", "F", ("1857", "Dijon"), ("", ""), "", ""),
    (49, "Gaston", "LEBRUN", "M", ("19 SEP 1880", "Dijon"), ("", ""), "", ""),
    (50, "L\xe9onie", "LEBRUN", "F", ("1883", "Dijon"), ("", ""), "", ""),
    (51, "Cl\xe9mence", "BRUN", "F", ("1830", "Sombernon"), ("", ""), "", ""),
    (52, "F\xe9lix", "DURAND", "M", ("1854", "Pont-de-Pany"), ("", ""), "", ""),
]
# id, husband, wife, marriage date, place, children
F = [
    (1, 1, 2, "24 JAN 1716", "Vandenesse", [4, 5]),
    (2, 1, 3, "8 FEB 1741", "Saint-Aubin", [6]),  # remarriage of Pierre
    (3, 4, 7, "12 FEB 1743", "Gissey", [9, 10, 11]),
    (4, 8, 5, "30 APR 1740", "Vandenesse", [12]),
    (5, 6, 13, "20 NOV 1764", "Fleurey", [14]),
    (6, 9, 15, "7 FEB 1768", "Sombernon", [17, 18]),
    (7, 16, 10, "15 JAN 1770", "Saint-Aubin", [19, 20]),
    (8, 21, 12, "1762", "Gissey", [22]),
    (9, 14, 23, "9 FEB 1790", "Dijon", [24, 25]),
    (10, 19, 18, "24 NOV 1795", "Saint-Aubin", [26, 27]),  # first cousins: the implex
    (11, 17, 28, "1793", "Velars", [30, 31]),
    (12, 17, 29, "12 OCT 1806", "Velars", [32]),  # remarriage of Joseph
    (13, 33, 20, "1796", "Pont-de-Pany", [34]),
    (14, 25, 35, "3 JUL 1822", "Dijon", [36, 37]),
    (15, 26, 38, "1823", "Fleurey", [40, 41]),
    (16, 30, 39, "1819", "Velars", [42]),
    (17, 36, 43, "1850", "Dijon", [45, 46]),
    (18, 44, 37, "1848", "Dijon", [47]),
    (19, 45, 48, "1878", "Dijon", [49, 50]),
    (20, 40, 51, "1852", "Sombernon", [52]),
]
# Documents: id, title, text, file, type
D = [
    (1, "Acte de bapt\xeame de Pierre Lebrun", "Registre paroissial de Saint-Aubin, 1692, folio 3.\nL'an mil six cent quatre-vingt-douze, le troisi\xe8me f\xe9vrier, a \xe9t\xe9 baptis\xe9 Pierre, fils de Claude Lebrun et de Barbe Jacquot.", "actes/1692-bapteme-pierre-lebrun.jpg", "Image"),
    (2, "Contrat de mariage Lebrun - Girard", "Pass\xe9 devant Me Voisin, notaire \xe0 Sombernon. La future \xe9pouse apporte un lit garni, une vache et vingt livres.", "actes/1716-contrat-lebrun-girard.pdf", "PDF"),
    (3, "Lettre d'\xc9tienne \xe0 son fr\xe8re Nicolas", "Toulon, le 12 flor\xe9al an VI.\nMon cher fr\xe8re, nous embarquons demain pour une destination que l'on nous cache. Embrasse pour moi notre m\xe8re.", "", "Texte"),
    (4, "Photographie de la famille Lebrun vers 1890", "Devant la maison de Dijon : \xc9mile, Jos\xe9phine, Henri et Berthe.", "photos/famille-lebrun-1890.jpg", "Image"),
    (5, "Dispense de consanguinit\xe9 Durand - Lebrun", "Accord\xe9e par l'\xe9v\xeach\xe9 de Dijon le 2 novembre 1795.", "actes/1795-dispense.jpg", "Image"),
]

LIEUX = {}
personnes = {p[0]: p for p in P}
familles = {f[0]: f for f in F}
parents = {}
for f in F:
    for c in f[5]:
        parents[c] = f
mariages = {}
for f in F:
    mariages.setdefault(f[1], []).append(f)
    mariages.setdefault(f[2], []).append(f)

lignes = []


def ecrit(niveau, tag, valeur=""):
    lignes.append(f"{niveau} {tag} {valeur}".rstrip() if valeur or tag else f"{niveau}")


def decoupe(texte):
    """A line of text cut at 60 columns, at a blank when there is one."""
    morceaux = []
    while len(texte) >= 61:
        p = texte.rfind(" ", 0, 60)
        if p > 0:
            morceaux.append(texte[:p])
            texte = texte[p + 1:]
        else:
            morceaux.append(texte[:60])
            texte = texte[60:]
    morceaux.append(texte)
    return morceaux


def texte_long(niveau, tag, texte, premier_en_cont=False):
    """A text of several lines: CONT for each line, CONC inside a long one."""
    for n, ligne in enumerate(texte.split("\n")):
        morceaux = decoupe(ligne)
        if n == 0 and not premier_en_cont:
            ecrit(niveau, tag, morceaux[0])
        else:
            ecrit(niveau + 1, "CONT", morceaux[0])
        for m in morceaux[1:]:
            ecrit(niveau + 1, "CONC", m)


def nom(i):
    p = personnes[i]
    return f"{p[1]} {p[2].capitalize()}"


def complete(date):
    return date[:1].isdigit() and len(date.split()) == 3


# Events: id, tag, title, date, place, note, [(person, role)], documents
E = []


def evenement(tag, titre, date, lieu, note, roles, docs=()):
    E.append((len(E) + 1, tag, titre, date, lieu, note, roles, list(docs)))


for p in P:
    i, date, lieu = p[0], p[4][0], p[4][1]
    f = parents.get(i)
    if not complete(date) or not f:
        continue
    roles = [(i, "CHIL"), (f[1], "FATH"), (f[2], "MOTH")]
    gp = [parents.get(f[1]), parents.get(f[2])]
    parrain = next((g[1] for g in gp if g), None)
    marraine = next((g[2] for g in reversed(gp) if g), None)
    note = "Baptis\xe9 le jour m\xeame de sa naissance."
    if parrain:
        roles.append((parrain, "(Parrain)"))
    if marraine:
        roles.append((marraine, "(Marraine)"))
    if parrain and marraine:
        note = f"Parrain : {nom(parrain)}, son grand-p\xe8re ; marraine : {nom(marraine)}, sa grand-m\xe8re, qui a d\xe9clar\xe9 ne savoir signer."
    evenement("CHR", f"Bapt\xeame de {nom(i)}", date, lieu, note, roles,
              [1] if i == 1 else [])
evenement("CHR", "Bapt\xeame de Pierre Lebrun", "3 FEB 1692", "Saint-Aubin",
          "Parents : Claude Lebrun et Barbe Jacquot.", [(1, "CHIL")], [1])
for f in F:
    if not complete(f[3]):
        continue
    roles = [(f[1], "HUSB"), (f[2], "WIFE")]
    for conjoint in (f[1], f[2]):
        pf = parents.get(conjoint)
        if pf:
            roles.append((pf[1], "(T\xe9moin)"))
    docs = [2] if f[0] == 1 else [5] if f[0] == 10 else []
    evenement("MARR", f"Mariage de {nom(f[1])} et {nom(f[2])}", f[3], f[4],
              "Les \xe9poux ont sign\xe9 ainsi que les t\xe9moins.", roles, docs)
for p in P:
    if complete(p[5][0]):
        roles = [(p[0], "(D\xe9funt)")]
        enfants = [c for f in mariages.get(p[0], []) for c in f[5]]
        if enfants:
            roles.append((enfants[0], "(D\xe9clarant)"))
        evenement("DEAT", f"D\xe9c\xe8s de {nom(p[0])}", p[5][0], p[5][1], "", roles)
        evenement("BURI", f"Inhumation de {nom(p[0])}", p[5][0], p[5][1],
                  "Inhum\xe9 au cimeti\xe8re de la paroisse.", [(p[0], "(D\xe9funt)")])

citations = {}
for e in E:
    for personne, role in e[6]:
        citations.setdefault(personne, []).append((e[0], role))
documents_personne = {1: [1], 2: [2], 11: [3], 36: [4], 18: [5], 19: [5]}

ecrit(0, "HEAD")
ecrit(1, "SOUR", "SYLVANE")
ecrit(2, "VERS", "2001.0")
ecrit(1, "DEST", "PAF")
ecrit(1, "DATE", "01 d\xe9cembre 2026")
ecrit(1, "GEDC")
ecrit(2, "VERS", "5.5")
ecrit(2, "FORM", "Lineage-Linked")
ecrit(1, "CHAR", "ANSI")
ecrit(1, "FILE", "C:\\G\xe9n\xe9alogie\\famille-exemple.sv2")
ecrit(1, "LANG", "French")
ecrit(1, "SUBM", "@S1@")
texte_long(1, "NOTE", "Famille Lebrun et alli\xe9s\n"
           "Une famille imaginaire de la vall\xe9e de l'Ouche, pour apprendre Sylvane.\n"
           "Toutes les personnes et tous les actes sont invent\xe9s.")
ecrit(0, "@S1@", "SUBM")
ecrit(1, "NAME", "Cercle g\xe9n\xe9alogique de la vall\xe9e de l'Ouche")
ecrit(1, "ADDR", "Maison des associations")
ecrit(2, "CONT", "2 place de l'\xc9glise")
ecrit(2, "CONT", "21410 Saint-Aubin")

for p in sorted(P, key=lambda p: (p[2], p[1], p[0])):
    i, prenoms, nom_famille, sexe, naiss, deces, metier, note = p
    ecrit(0, f"@I{i}@", "INDI")
    ecrit(1, "NAME", f"{prenoms} /{nom_famille}/")
    ecrit(1, "SEX", sexe)
    if metier:
        ecrit(1, "OCCU", metier)
    if i == 34:
        ecrit(1, "ASSO", "@I40@")
        ecrit(2, "RELA", "Parrain")
    for tag, (date, lieu) in (("BIRT", naiss), ("DEAT", deces)):
        if date or lieu:
            ecrit(1, tag)
            ecrit(2, "DATE", date)
            if lieu:
                ecrit(2, "PLAC", lieu)
    if i == 1:
        ecrit(1, "EVEN")
        ecrit(2, "TYPE", "L\xe9gende")
        ecrit(2, "DATE", "52 BC")
        ecrit(2, "NOTE", "La famille se dit issue d'un guerrier \xe9duen d'Alise.")
    if note:
        texte_long(1, "NOTE", note)
    for f in mariages.get(i, []):
        ecrit(1, "FAMS", f"@F{f[0]}@")
    if i in parents:
        ecrit(1, "FAMC", f"@F{parents[i][0]}@")
    for e, role in citations.get(i, []):
        ecrit(1, "SOUR", f"@E{e}@")
        ecrit(2, "EVEN")
        ecrit(3, "ROLE", role)
    for d in documents_personne.get(i, []):
        ecrit(1, "NOTE", f"@D{d}@")

for f in F:
    ecrit(0, f"@F{f[0]}@", "FAM")
    ecrit(1, "HUSB", f"@I{f[1]}@")
    ecrit(1, "WIFE", f"@I{f[2]}@")
    for c in f[5]:
        ecrit(1, "CHIL", f"@I{c}@")
    ecrit(1, "MARR")
    ecrit(2, "DATE", f[3])
    ecrit(2, "PLAC", f[4])
    if f[0] == 10:
        ecrit(1, "NOTE", "Mariage entre cousins germains, petits-enfants de Jean Lebrun.")

for e in E:
    eid, tag, titre, date, lieu, note, roles, docs = e
    ecrit(0, f"@E{eid}@", "SOUR")
    ecrit(1, "DATA")
    ecrit(2, "EVEN", tag)
    ecrit(3, "DATE", date)
    ecrit(3, "PLAC", lieu)
    if note:
        texte_long(2, "EVEN", note, premier_en_cont=True)
    for d in docs:
        ecrit(2, "NOTE", f"@D{d}@")
    ecrit(1, "TITL", titre)

for d in sorted(D, key=lambda d: d[1]):
    did, titre, texte, fichier, type_doc = d
    ecrit(0, f"@D{did}@", f"NOTE {titre}")
    texte_long(0, "NOTE", texte, premier_en_cont=True)
    ecrit(1, "REFN", fichier)
    ecrit(2, "TYPE", type_doc)

ecrit(0, "TRLR")

chemin = os.path.join(os.path.dirname(os.path.abspath(__file__)), "famille-exemple.ged")
with open(chemin, "wb") as sortie:
    sortie.write(("\r\n".join(lignes) + "\r\n").encode("cp1252"))
print(f"{chemin}: {len(P)} persons, {len(F)} families, {len(E)} events, {len(D)} documents")
