# SPDX-License-Identifier: MIT
"""The rules by which mutants are made."""
import pathlib
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "scripts" / "mutants"))
import rules


def mutants(*lines):
    """{(rule, the changed lines)} of a source with these lines."""
    with tempfile.TemporaryDirectory() as folder:
        (pathlib.Path(folder) / "source.cpp").write_text("\n".join(lines))
        return {(m.rule, rules.stripped(m.new)) for m in rules.mutants_of(pathlib.Path(folder), "source.cpp")}


class Rules(unittest.TestCase):
    def test_a_condition_is_turned_round(self):
        self.assertIn(("condition", "if (!(isLive)) {"), mutants("    if (isLive) {"))
        self.assertIn(("condition", "if (isLive) {"), mutants("    if (!isLive) {"))

    def test_the_condition_behind_a_declaration_is_turned_round(self):
        self.assertIn(("condition", "if (int a = b(); !(a > c)) {"), mutants("    if (int a = b(); a > c) {"))

    def test_a_bound_moves_by_one(self):
        self.assertIn(("comparison", "while (i <= size) {"), mutants("    while (i < size) {"))
        self.assertIn(("comparison", "return a != b;"), mutants("    return a == b;"))

    def test_a_template_argument_is_no_comparison(self):
        self.assertEqual(set(), {m for m in mutants("    std::vector<int> a;") if m[0] == "comparison"})

    def test_and_becomes_or(self):
        self.assertIn(("logic", "return a || b;"), mutants("    return a && b;"))

    def test_sums_become_differences(self):
        self.assertIn(("arithmetic", "size = a - b;"), mutants("    size = a + b;"))
        self.assertIn(("arithmetic", "--size;"), mutants("    ++size;"))

    def test_numbers_move_by_one(self):
        self.assertIn(("constant", "write(text, 256);"), mutants("    write(text, 255);"))
        self.assertIn(("constant", "write(text, 254);"), mutants("    write(text, 255);"))
        self.assertIn(("constant", "flag = false;"), mutants("    flag = true;"))

    def test_texts_change(self):
        self.assertIn(("text", 'write("xlost");'), mutants('    write("lost");'))

    def test_orders_of_memory_are_weakened(self):
        self.assertIn(("order", "word.load(std::memory_order_relaxed);"),
                      mutants("    word.load(std::memory_order_acquire);"))

    def test_a_statement_is_left_out(self):
        self.assertIn(("left out", ";"), mutants("{", "    buffer.unlock();", "}"))

    def test_neighbours_are_swapped(self):
        self.assertIn(("swapped", "stop();\nreset();"), mutants("{", "    reset();", "    stop();", "}"))

    def test_assignments_that_do_not_read_each_other_are_not_swapped(self):
        def swaps(*lines):
            return {m for m in mutants("{", *lines, "}") if m[0] == "swapped"}
        self.assertEqual(set(), swaps("    m_width = static_cast<std::int32_t>(width);", "    m_height = height;"))
        self.assertNotEqual(set(), swaps("    m_width = width;", "    m_height = m_width;"))
        self.assertNotEqual(set(), swaps("    m_width = read();", "    m_height = height;"))

    def test_special_members_stay(self):
        self.assertEqual(set(), mutants("{", "    CListener() = default;", "    CListener(const CListener&) = delete;"))

    def test_the_bound_of_a_fixed_text_stays(self):
        self.assertEqual({"text", "left out"}, {rule for rule, _ in mutants("{", '    writeText(message, 255, "Lost.");')})
        self.assertIn(("constant", 'writeText(message, 254, "No ", name);'),
                      mutants("{", '    writeText(message, 255, "No ", name);'))

    def test_no_bound_is_raised_above_the_longest_text(self):
        constants = {m for m in mutants("{", '    writeText(message, 255, "No ", name);') if m[0] == "constant"}
        self.assertEqual({("constant", 'writeText(message, 254, "No ", name);')}, constants)

    def test_what_a_mask_leaves_out_stays(self):
        constants = {m for m in mutants("    setr(0, -1, -1);") if m[0] == "constant"}
        self.assertEqual({("constant", "setr(1, -1, -1);")}, constants)

    def test_declarations_and_returns_stay(self):
        self.assertEqual(set(), {m for m in mutants("{", "    CBuffer buffer;", "    return buffer;", "}")
                                 if m[0] in ("left out", "swapped")})

    def test_comments_and_texts_are_not_read_as_code(self):
        self.assertEqual(set(), mutants("    // if (a < 1) b = 2;"))
        self.assertEqual({"text"}, {rule for rule, _ in mutants('    constexpr const char* text = "a < 1 && b";')})


class Product(unittest.TestCase):
    def test_there_are_mutants_of_every_room(self):
        rooms = {pathlib.PurePath(m.file).parent.as_posix() for m in rules.all_mutants(ROOT)}
        self.assertEqual({"platform", "capture", "properties", "acquisition", "acquisition/kernels", "adapter"},
                         rooms)

    def test_a_key_stands_for_one_mutant(self):
        keys = [m.key for m in rules.all_mutants(ROOT)]
        self.assertEqual(len(keys), len(set(keys)))

    def test_every_equivalent_mutant_is_one_and_has_a_reason(self):
        made = {(m.file, rules.stripped(m.old), rules.stripped(m.new)) for m in rules.all_mutants(ROOT)}
        for mutant, reason in rules.read_equivalents(ROOT / "tests" / "mutants" / "equivalent.txt").items():
            self.assertIn(mutant, made)
            self.assertTrue(reason, mutant)


if __name__ == "__main__":
    unittest.main()
