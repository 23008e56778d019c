import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.util.List;
import vynxfer.FileDecompressor;
import vynxfer.VynXfer;

/** Tells how the local file system will store a few names. */
public final class StoredNames {
    private StoredNames() {}

    public static void main(String[] arguments) {
        PrintStream out = new PrintStream(System.out, true, StandardCharsets.UTF_8);
        out.println("The local set is " + (VynXfer.isVynDefaultLocale() ? "ISO 8859-1" : "another one"));
        for (String name : List.of("caf\u00E9.txt", "\u65E5\u8A18.txt")) {
            out.println(name + " will be " + FileDecompressor.utf16ToLocal(name));
        }
    }
}
