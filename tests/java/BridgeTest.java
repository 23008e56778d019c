import java.util.Arrays;
import java.util.List;
import vynxfer.FileDecompressor;
import vynxfer.VynXfer;

/** Runs the bridge in a real virtual machine, in the locale that {@code LANG} names. Exits with 1 after a failure. */
public final class BridgeTest {
    private static final List<String> LOCALES = Arrays.asList(null, "en_US.UTF-8", "ja_JP.SJIS");

    // A name, and what comes back in each of LOCALES; null stands for the very same object.
    private static final String[][] NAMES = {
        {"", null, null, null},
        {"caf\u00E9\u65E5", "caf\u00E9U+65E5", "caf\u00E9\u65E5", "cafU+00E9\u65E5"},
        {"\u65E5\uD83D\uDE00", "U+65E5U+D83DU+DE00", "\u00E6\u0097\u00A5\u00F0\u009F\u0098\u0080",
            "\u65E5U+D83DU+DE00"},
        {"\u00E9".repeat(3000), "\u00E9".repeat(2047), "\u00E9".repeat(2047), "U+00E9".repeat(682)},
    };

    private static boolean failed;

    private BridgeTest() {}

    private static void check(boolean holds, String what) {
        if (!holds) {
            failed = true;
            System.err.println(what);
        }
    }

    private static void checkNames() {
        String locale = System.getenv("LANG");
        int column = Math.max(LOCALES.indexOf(locale), 0); // KOI8-R has no key: as if there were no locale
        check(VynXfer.isVynDefaultLocale() == (column == 0), "isVynDefaultLocale is wrong for LANG " + locale);
        check(FileDecompressor.utf16ToLocal(null) == null, "null gave a name");
        for (String[] row : NAMES) {
            String expected = row[1 + column];
            String result = FileDecompressor.utf16ToLocal(row[0]);
            boolean holds = expected == null ? result == row[0] : expected.equals(result);
            check(holds, row[0] + " gave " + result + ", expected " + expected);
        }
    }

    /**
     * Names of every length, ended by what is hard to store. Whatever becomes of the end, the letters before it are kept,
     * cut at the room of a name.
     */
    private static void checkLengths() {
        final int room = 4095;
        String[] ends = {"", "\0", "\uD800", "\uDC00", "\uD800\uD800", "\uDC00\uD800", "\uD83D\uDE00", "\u00E9",
            "\u65E5", "\0\uD83D\uDE00\0", "\uFFFF"};
        String letters = "n".repeat(65535);
        for (int length = 0; length <= letters.length(); ++length) {
            if (length > 300 && Math.abs(length - room) > 8 && length % 509 != 0) {
                continue;
            }
            for (String end : ends) {
                String result = FileDecompressor.utf16ToLocal(letters.substring(0, length) + end);
                String kept = letters.substring(0, Math.min(length, room));
                boolean fits = result.length() <= Math.min(room, length + 6 * end.length()); // six for an escape
                check(result.startsWith(kept) && fits, length + " letters and an end gave " + result.length());
            }
        }
        check(FileDecompressor.utf16ToLocal(letters).length() == room, "a name of 65,535 letters");
    }

    // One message, each time: not the failure to initialise a class that a second use usually shows.
    private static void checkUnloadable(List<String> expected, Runnable use) {
        for (int time = 1; time <= 2; ++time) {
            try {
                use.run();
                check(false, "the library was found");
            } catch (UnsatisfiedLinkError error) {
                String message = error.getMessage();
                check(expected.stream().allMatch(message::contains), message);
            }
        }
    }

    /** Arguments: what each message must contain where the library must not be found; none where it must. */
    public static void main(String[] arguments) {
        if (arguments.length != 0) {
            checkUnloadable(Arrays.asList(arguments), () -> VynXfer.isVynDefaultLocale());
            checkUnloadable(Arrays.asList(arguments), () -> FileDecompressor.utf16ToLocal("name"));
        } else {
            checkNames();
            checkLengths();
        }
        System.exit(failed ? 1 : 0);
    }
}
