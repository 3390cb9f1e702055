// Writes, to the file named, a Fast Infoset document in which each value is stored by an encoding algorithm or a
// restricted alphabet; with --utf-16 its strings are in UTF-16BE.
// Usage: java -cp FastInfoset.jar TypedDocument.java [--utf-16] FILE

import com.sun.xml.fastinfoset.sax.SAXDocumentSerializer;
import java.io.FileOutputStream;
import java.io.OutputStream;
import org.jvnet.fastinfoset.EncodingAlgorithmIndexes;
import org.jvnet.fastinfoset.FastInfosetSerializer;
import org.jvnet.fastinfoset.sax.helpers.EncodingAlgorithmAttributesImpl;
import org.xml.sax.SAXException;

public class TypedDocument {
    interface Value {
        void write(SAXDocumentSerializer out) throws SAXException;
    }

    private static final String NAMESPACE = "urn:example:typed";
    private static final byte[] OCTETS = {0, 1, 2, (byte) 0xFF};
    private static final char[] NUMBER = "-12.50 +3".toCharArray();  // this writer has no table entry for an 'e'
    private static final char[] TIME = "2001-02-03T04:05:06Z".toCharArray();
    private static final String PLAIN = "caf\u00e9 \ud842\udfb7";
    private static final EncodingAlgorithmAttributesImpl NONE = new EncodingAlgorithmAttributesImpl();

    private final SAXDocumentSerializer out = new SAXDocumentSerializer();

    private TypedDocument(OutputStream stream, boolean wide) {
        if (wide) out.setCharacterEncodingScheme(FastInfosetSerializer.UTF_16BE);
        out.setOutputStream(stream);
    }

    private void element(String name, Value value) throws SAXException {
        out.startElement(NAMESPACE, name, name, NONE);
        value.write(out);
        out.endElement(NAMESPACE, name, name);
    }

    private static void add(EncodingAlgorithmAttributesImpl attributes, String name, int algorithm, Object value) {
        attributes.addAttributeWithBuiltInAlgorithmData("", name, name, algorithm, value);
    }

    private void attributes() throws SAXException {
        EncodingAlgorithmAttributesImpl attributes = new EncodingAlgorithmAttributesImpl();
        add(attributes, "int", EncodingAlgorithmIndexes.INT, new int[] {17, -1});
        add(attributes, "octets", EncodingAlgorithmIndexes.BASE64, OCTETS);
        add(attributes, "real", EncodingAlgorithmIndexes.DOUBLE, new double[] {0.5});
        attributes.addAttribute("", "plain", "plain", "CDATA", PLAIN);
        out.startElement(NAMESPACE, "attributes", "attributes", attributes);
        out.endElement(NAMESPACE, "attributes", "attributes");
    }

    private void write() throws SAXException {
        out.startDocument();
        out.startPrefixMapping("", NAMESPACE);
        out.startElement(NAMESPACE, "typed", "typed", NONE);
        element("octets", o -> o.bytes(OCTETS, 0, OCTETS.length));
        element("short", o -> o.shorts(new short[] {-2}, 0, 1));
        element("shorts", o -> o.shorts(new short[] {-32768, 0, 32767}, 0, 3));
        element("int", o -> o.ints(new int[] {2147483647}, 0, 1));
        element("ints", o -> o.ints(new int[300], 0, 300));
        element("long", o -> o.longs(new long[] {Long.MIN_VALUE, 1}, 0, 2));
        element("true", o -> o.booleans(new boolean[] {true}, 0, 1));
        element("false", o -> o.booleans(new boolean[] {false}, 0, 1));
        element("float", o -> o.floats(new float[] {1.5f, -0.25f}, 0, 2));
        element("double", o -> o.doubles(new double[] {-1234.5}, 0, 1));
        element("uuid", o -> o.uuids(new long[] {0x0011223344556677L, 0x8899AABBCCDDEEFFL}, 0, 2));
        element("number", o -> o.numericCharacters(NUMBER, 0, NUMBER.length));
        element("time", o -> o.dateTimeCharacters(TIME, 0, TIME.length));
        element("plain", o -> o.characters(PLAIN.toCharArray(), 0, PLAIN.length()));
        element("cdata", o -> {
            o.startCDATA();
            o.characters("<a> & ]]".toCharArray(), 0, 8);
            o.endCDATA();
        });
        attributes();
        out.endElement(NAMESPACE, "typed", "typed");
        out.endPrefixMapping("");
        out.endDocument();
    }

    public static void main(String[] arguments) throws Exception {
        boolean wide = arguments[0].equals("--utf-16");
        try (OutputStream stream = new FileOutputStream(arguments[arguments.length - 1])) {
            new TypedDocument(stream, wide).write();
        }
    }
}
