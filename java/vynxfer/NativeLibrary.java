package vynxfer;

import java.io.File;

/** The native library: loaded once, and where it can't be, each use says why. */
final class NativeLibrary {
    private static final String PROPERTY = "vynulib.library";
    private static final String NAME = "vynulib64";

    // Null where the library is there.
    private static final UnsatisfiedLinkError FAILURE = load();

    private NativeLibrary() {}

    /** Throws an {@link UnsatisfiedLinkError} with the same message each time that the library is not there. */
    static void require() {
        if (FAILURE != null) {
            throw error(FAILURE.getMessage(), FAILURE.getCause());
        }
    }

    /** What was looked for, and where. */
    static String description() {
        String file = System.getProperty(PROPERTY);
        return file != null ? file + " (property " + PROPERTY + ")"
                : System.mapLibraryName(NAME) + " in java.library.path (" + System.getProperty("java.library.path")
                        + ")";
    }

    private static UnsatisfiedLinkError load() {
        String file = System.getProperty(PROPERTY);
        try {
            if (file != null) {
                System.load(new File(file).getAbsolutePath());
            } else {
                System.loadLibrary(NAME);
            }
        } catch (UnsatisfiedLinkError reason) {
            return error("cannot load " + description() + ": " + reason.getMessage() + "; -D" + PROPERTY
                    + "=FILE names the file", reason);
        }
        try {
            VynXfer.isVynDefaultLocale(null);
            return null;
        } catch (UnsatisfiedLinkError reason) {
            return error(description() + " has no bridge to Java; it is built with VYNULIB_JAVA=ON", reason);
        }
    }

    private static UnsatisfiedLinkError error(String message, Throwable cause) {
        UnsatisfiedLinkError error = new UnsatisfiedLinkError(message);
        error.initCause(cause);
        return error;
    }
}
