package vynxfer;

/** The command {@code java -jar vynxfer.jar --self-test}. */
final class Main {
    private Main() {}

    private static boolean works() {
        String name = "name.txt";
        return FileDecompressor.utf16ToLocal(null) == null && name.equals(FileDecompressor.utf16ToLocal(name));
    }

    /**
     * Exits with 0 if the native library is there and answers, with 1 if not, and with 2 for wrong usage.
     *
     * @param arguments {@code --self-test}
     */
    public static void main(String[] arguments) {
        if (arguments.length != 1 || !arguments[0].equals("--self-test")) {
            System.err.println("usage: java -jar vynxfer.jar --self-test");
            System.exit(2);
        }
        System.out.println("vynxfer " + Main.class.getPackage().getImplementationVersion());
        try {
            System.out.println("default set: " + (VynXfer.isVynDefaultLocale() ? "ISO 8859-1" : "another one"));
            if (works()) {
                System.out.println("ok: " + NativeLibrary.description());
                return;
            }
            System.err.println("wrong answers from " + NativeLibrary.description());
        } catch (UnsatisfiedLinkError error) {
            System.err.println(error.getMessage());
        }
        System.exit(1);
    }
}
