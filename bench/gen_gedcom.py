#!/usr/bin/env python3
"""Writes a synthetic GEDCOM 5.5 file of N persons for the reader's benchmark:
families over generations, dates, places, occupations, notes cut by CONT and
CONC, source records and citations. The same seed gives the same file.

    python3 bench/gen_gedcom.py /tmp/bench.ged [--personnes 100000] [--graine 1]
        [--utf8] [--pointeurs-texte]

100,000 persons give about 26 MB. Windows-1252 (CHAR ANSI) by default.
"""
import argparse
import random

PRENOMS_H = ["Jean", "Pierre", "Claude", "Nicolas", "Fran\xe7ois", "Joseph", "Louis", "\xc9tienne",
             "Beno\xeet", "Honor\xe9", "Jacques", "Antoine", "Edme", "L\xe9on", "\xc9mile", "Henri"]
PRENOMS_F = ["Marie", "Anne", "Jeanne", "Fran\xe7oise", "Genevi\xe8ve", "Th\xe9r\xe8se", "C\xe9cile",
             "Agn\xe8s", "Marguerite", "Madeleine", "Zo\xe9", "H\xe9l\xe8ne", "Ad\xe8le", "Louise"]
NOMS = ["LEBRUN", "GIRARD", "ROUX", "MOREL", "BERTHIER", "PERNOT", "COLLIN", "DURAND", "GAUTHIER",
        "RAVIER", "MARTIN", "BONNOT", "PETIT", "GARNIER", "FAIVRE", "ROYER", "MAILLARD", "VOISIN",
        "DUPUIS", "BRUN", "MOUGEOT", "JACQUOT", "CHEVALIER", "LAMBERT", "FOURNIER", "MERCIER"]
LIEUX = ["Saint-Aubin", "Vandenesse", "Pont-de-Pany", "Gissey", "Fleurey", "Sombernon", "Velars",
         "Dijon", "Beaune", "Nuits", "Autun", "Semur", "Montbard", "Is-sur-Tille", "Auxonne"]
METIERS = ["laboureur", "vigneron", "tonnelier", "tisserand", "mar\xe9chal-ferrant", "meunier",
           "charron", "journalier", "cordonnier", "instituteur", "notaire", "aubergiste"]
MOIS = ["JAN", "FEB", "MAR", "APR", "MAY", "JUN", "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"]
PHRASES = ["Baptis\xe9 le jour m\xeame de sa naissance, le parrain a sign\xe9 avec le cur\xe9.",
           "Mentionn\xe9 au r\xf4le de la taille de la paroisse pour une maison et trois journaux de terre.",
           "D\xe9c\xe9d\xe9 lors de l'\xe9pid\xe9mie ; inhum\xe9 dans le cimeti\xe8re pr\xe8s de l'\xe9glise.",
           "Les \xe9poux ont d\xe9clar\xe9 ne savoir signer, de ce enquis selon l'ordonnance."]


def main():
    a = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    a.add_argument("sortie")
    a.add_argument("--personnes", type=int, default=100000)
    a.add_argument("--graine", type=int, default=1)
    a.add_argument("--utf8", action="store_true", help="UTF-8 with CHAR UTF-8")
    a.add_argument("--pointeurs-texte", action="store_true",
                   help="pointers such as @P_LEBRUN_12@ instead of @I12@")
    args = a.parse_args()
    rng = random.Random(args.graine)
    n = args.personnes

    # Persons: sex, first name, family name, birth year, family as child, families as spouse.
    personnes = []
    familles = []  # husband, wife, children, year

    def nouvelle(sexe, nom, annee, famc=0):
        prenoms = PRENOMS_H if sexe == "M" else PRENOMS_F
        prenom = rng.choice(prenoms)
        if rng.random() < 0.4:
            prenom += " " + rng.choice(prenoms)
        personnes.append({"sexe": sexe, "prenom": prenom, "nom": nom, "annee": annee,
                          "famc": famc, "fams": []})
        return len(personnes)

    a_marier = []
    while len(personnes) < n:
        if a_marier and rng.random() < 0.85:
            p = a_marier.pop(rng.randrange(len(a_marier)) if rng.random() < 0.1 else 0)
        else:
            p = nouvelle(rng.choice("MF"), rng.choice(NOMS), rng.randint(1650, 1700))
        pp = personnes[p - 1]
        conjoint = nouvelle("F" if pp["sexe"] == "M" else "M", rng.choice(NOMS),
                            pp["annee"] + rng.randint(-5, 5))
        mari, femme = (p, conjoint) if pp["sexe"] == "M" else (conjoint, p)
        f = len(familles) + 1
        annee = max(personnes[mari - 1]["annee"], personnes[femme - 1]["annee"]) + rng.randint(18, 30)
        familles.append((mari, femme, [], annee))
        personnes[mari - 1]["fams"].append(f)
        personnes[femme - 1]["fams"].append(f)
        for _ in range(rng.randint(0, 6)):
            if len(personnes) >= n:
                break
            c = nouvelle(rng.choice("MF"), personnes[mari - 1]["nom"], annee + rng.randint(1, 20), f)
            familles[-1][2].append(c)
            if rng.random() < 0.6:
                a_marier.append(c)
    nsources = max(1, n // 50)

    def ptr(lettre, i):
        if args.pointeurs_texte and lettre == "I":
            return f"@P_{personnes[i - 1]['nom']}_{i}@"
        return f"@{lettre}{i}@"

    def date(annee):
        r = rng.random()
        if r < 0.6:
            return f"{rng.randint(1, 28)} {rng.choice(MOIS)} {annee}"
        if r < 0.75:
            return f"ABT {annee}"
        if r < 0.85:
            return f"BET {annee - 2} AND {annee + 2}"
        return str(annee)

    lignes = ["0 HEAD", "1 SOUR GEN_GEDCOM", "1 GEDC", "2 VERS 5.5", "2 FORM Lineage-Linked",
              "1 CHAR " + ("UTF-8" if args.utf8 else "ANSI"), "1 SUBM @U1@",
              "0 @U1@ SUBM", "1 NAME Banc d'essai"]
    for i, p in enumerate(personnes, 1):
        l = lignes
        l.append(f"0 {ptr('I', i)} INDI")
        l.append(f"1 NAME {p['prenom']} /{p['nom']}/")
        l.append(f"1 SEX {p['sexe']}")
        l.append("1 BIRT")
        l.append(f"2 DATE {date(p['annee'])}")
        l.append(f"2 PLAC {rng.choice(LIEUX)}, C\xf4te-d'Or")
        if rng.random() < 0.7:
            l.append("1 DEAT")
            l.append(f"2 DATE {date(p['annee'] + rng.randint(1, 90))}")
            l.append(f"2 PLAC {rng.choice(LIEUX)}, C\xf4te-d'Or")
        if rng.random() < 0.5:
            l.append(f"1 OCCU {rng.choice(METIERS)}")
        if rng.random() < 0.15:
            phrase = rng.choice(PHRASES)
            l.append(f"1 NOTE {phrase[:40]}")
            l.append(f"2 CONC {phrase[40:]}")
            l.append(f"2 CONT {rng.choice(PHRASES)}")
        if p["famc"]:
            l.append(f"1 FAMC {ptr('F', p['famc'])}")
        for f in p["fams"]:
            l.append(f"1 FAMS {ptr('F', f)}")
        l.append(f"1 SOUR {ptr('S', rng.randint(1, nsources))}")
        l.append(f"2 PAGE folio {rng.randint(1, 400)}, acte {rng.randint(1, 60)}")
    for f, (mari, femme, enfants, annee) in enumerate(familles, 1):
        lignes.append(f"0 {ptr('F', f)} FAM")
        lignes.append(f"1 HUSB {ptr('I', mari)}")
        lignes.append(f"1 WIFE {ptr('I', femme)}")
        for c in enfants:
            lignes.append(f"1 CHIL {ptr('I', c)}")
        lignes.append("1 MARR")
        lignes.append(f"2 DATE {date(annee)}")
        lignes.append(f"2 PLAC {rng.choice(LIEUX)}")
    for s in range(1, nsources + 1):
        lignes.append(f"0 {ptr('S', s)} SOUR")
        lignes.append(f"1 TITL Registres paroissiaux de {rng.choice(LIEUX)}, {1650 + s % 250}")
        lignes.append("1 AUTH Archives d\xe9partementales de la C\xf4te-d'Or")
        lignes.append(f"1 NOTE {rng.choice(PHRASES)}")
    lignes.append("0 TRLR")
    with open(args.sortie, "wb") as sortie:
        sortie.write(("\r\n".join(lignes) + "\r\n").encode("utf-8" if args.utf8 else "cp1252"))
    print(f"{args.sortie}: {len(personnes)} persons, {len(familles)} families, {nsources} sources")


if __name__ == "__main__":
    main()
