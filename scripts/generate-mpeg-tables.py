#!/usr/bin/env python3
"""Writes the MPEG audio decoder's standard tables as C++ from the tab-separated reference data.

    generate-mpeg-tables.py TABLES_FOLDER OUTPUT.cpp          writes the source
    generate-mpeg-tables.py --check TABLES_FOLDER OUTPUT.cpp  exits 1 when the source differs from the data
"""
import os
import sys


def rows(folder, name):
    with open(os.path.join(folder, name), encoding="utf-8") as table:
        return [line.rstrip("\n").split("\t") for line in table if line.strip() and not line.startswith("#")]


def bit_rates(folder):
    # [lsf][layer - 1][index]; the forbidden index 15 is written as 0, like free format.
    table = [[[0] * 16 for _ in range(3)] for _ in range(2)]
    for row in rows(folder, "bitrates.tsv"):
        index = int(row[0])
        for column, value in enumerate(row[1:]):
            table[column // 3][column % 3][index] = max(int(value), 0)
    return "const std::int16_t bitRates[2][3][16] = " + nested(table) + ";\n"


def sample_rates(folder):
    rates = {int(row[4]): int(row[3]) for row in rows(folder, "samplerates.tsv") if int(row[4]) >= 0}
    return "const std::int32_t sampleRates[9] = " + nested([rates[i] for i in range(9)]) + ";\n"


def allocation_tables(folder):
    limits = {int(row[0]): int(row[2]) for row in rows(folder, "layer2_table_info.tsv")}
    tables = []
    for number in range(5):
        bits = [0] * 32
        codes = [[(0, 0, 0)] * 16 for _ in range(32)]
        for row in rows(folder, "layer2_allocation_tables.tsv"):
            if int(row[0]) != number:
                continue
            subband, nbal, code = int(row[1]), int(row[2]), int(row[3])
            bits[subband] = nbal
            codes[subband][code] = (int(row[4]), int(row[7]), int(row[5]))
        entry = "{%d,\n     %s,\n     {%s}}" % (limits[number], nested(bits),
                                               ",\n      ".join(nested([list(c) for c in s]) for s in codes))
        tables.append(entry)
    return "const Layer2AllocationTable layer2AllocationTables[5] = {\n    " + ",\n    ".join(tables) + "};\n"


def table_selection(folder):
    index_of_rate = {44100: 0, 48000: 1, 32000: 2}
    table = [[[0] * 16 for _ in range(2)] for _ in range(3)]
    for row in rows(folder, "layer2_table_selection.tsv"):
        table[index_of_rate[int(row[0])]][int(row[1]) - 1][int(row[2])] = int(row[5])
    return "const std::uint8_t layer2TableSelection[3][2][16] = " + nested(table) + ";\n"


def synthesis_window(folder):
    # Exact multiples of 1/65536: two values of the printed table are truncated.
    values = {int(row[0]): round(float(row[1]) * 65536) for row in rows(folder, "synthesis_window.tsv")}
    lines = [", ".join("%d / 65536.0" % values[i] for i in range(row, row + 8)) for row in range(0, 512, 8)]
    return "const double synthesisWindowD[512] = {\n    " + ",\n    ".join(lines) + "};\n"


def rate_index(folder):
    return {int(row[3]): int(row[4]) for row in rows(folder, "samplerates.tsv") if int(row[4]) >= 0}


def band_starts(folder, name, count, type_name):
    by_rate = rate_index(folder)
    table = [None] * 9
    for row in rows(folder, name):
        table[by_rate[int(row[0])]] = [int(value) for value in row[2:2 + count]]
    return "const std::int16_t %s[9][%d] = %s;\n" % (type_name, count, nested(table))


def pretab(folder):
    return "const std::uint8_t layer3Pretab[22] = " + nested([int(row[1]) for row in rows(folder, "pretab.tsv")]) + ";\n"


def scalefactor_lengths(folder):
    lengths = [[int(row[1]), int(row[2])] for row in rows(folder, "slen.tsv")]
    return "const std::uint8_t layer3ScalefactorLengths[16][2] = " + nested(lengths) + ";\n"


def band_counts(folder):
    shapes = {"long": 0, "short": 1, "mixed": 2}
    table = [[[0] * 4 for _ in range(3)] for _ in range(6)]
    for row in rows(folder, "nr_of_sfb.tsv"):
        table[int(row[0])][shapes[row[1]]] = [int(value) for value in row[2:6]]
    return "const std::uint8_t layer3BandCounts[6][3][4] = " + nested(table) + ";\n"


def alias_coefficients(folder):
    return "const double layer3AliasCoefficients[8] = " + nested([row[1] for row in rows(folder, "alias_coefficients.tsv")]) + ";\n"


def huffman_tree(codes):
    # Depth first, the 0 branch right behind its node; a node holds minus the distance to its 1 branch.
    tree = []

    def emit(prefix):
        if prefix in codes:
            tree.append(codes[prefix])
            return
        node = len(tree)
        tree.append(0)
        emit(prefix + "0")
        tree[node] = node - len(tree)
        emit(prefix + "1")

    emit("")
    return tree


def huffman_tables(folder):
    trees = {}
    entries = []
    for row in rows(folder, "huffman/index.tsv"):
        if not row[0].isdigit():
            continue
        code_file, linbits = row[5], int(row[3])
        if code_file == "-":
            entries.append("{zeroTree, 0}")
            continue
        name = "tree" + os.path.basename(code_file)[6:8]
        if name not in trees:
            codes = {line[3]: int(line[0]) << 4 | int(line[1]) for line in rows(folder, code_file)}
            trees[name] = huffman_tree(codes)
        entries.append("{%s, %d}" % (name, linbits))
    for name, code_file in (("count1TreeA", "huffman/count1_a.tsv"), ("count1TreeB", "huffman/count1_b.tsv")):
        codes = {line[5]: int(line[0]) << 3 | int(line[1]) << 2 | int(line[2]) << 1 | int(line[3])
                 for line in rows(folder, code_file)}
        trees[name] = huffman_tree(codes)
    text = "namespace {\n\n// A table that codes nothing: a leaf of 0 at the root, no bit read.\nconst std::int16_t zeroTree[1] = {0};\n"
    for name, tree in trees.items():
        text += "const std::int16_t %s[%d] = %s;\n" % (name, len(tree), nested(tree))
    text += "\n} // namespace\n\n"
    text += "const HuffmanTable layer3HuffmanTables[32] = {\n    " + ",\n    ".join(entries) + "};\n"
    text += "const std::int16_t* const layer3Count1Trees[2] = {count1TreeA, count1TreeB};\n"
    return text


def nested(value):
    if isinstance(value, (list, tuple)):
        return "{" + ", ".join(nested(item) for item in value) + "}"
    return str(value)


def generate(folder):
    return ("// Generated by scripts/generate-mpeg-tables.py from the tables of the two MPEG audio standards.\n"
            "// Do not edit: run the script.\n"
            "#include \"audiofiles/mpeg/KalviDspMpegStandardTables.h\"\n\n"
            "namespace vlk::mpeg {\n\n"
            "// clang-format off\n"
            + bit_rates(folder) + sample_rates(folder) + table_selection(folder) + allocation_tables(folder)
            + synthesis_window(folder) + band_starts(folder, "sfb_long_boundaries.tsv", 23, "layer3LongBandStarts")
            + band_starts(folder, "sfb_short_boundaries.tsv", 14, "layer3ShortBandStarts") + pretab(folder)
            + scalefactor_lengths(folder) + band_counts(folder) + alias_coefficients(folder)
            + huffman_tables(folder) +
            "// clang-format on\n\n"
            "} // namespace vlk::mpeg\n")


def main(arguments):
    check = arguments[:1] == ["--check"]
    if check:
        arguments = arguments[1:]
    if len(arguments) != 2:
        sys.stderr.write(__doc__)
        return 2
    folder, output = arguments
    text = generate(folder)
    if check:
        with open(output, encoding="utf-8") as existing:
            if existing.read() != text:
                sys.stderr.write("%s differs from the tables in %s: run the script\n" % (output, folder))
                return 1
        return 0
    with open(output, "w", encoding="utf-8") as written:
        written.write(text)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
