// Measures the Fast Infoset of Java on documents in XML: reading to SAX events and writing from them, with the XML
// parser left out of both. Prints a line for each: document, road, fastest and median seconds, octets.
// Usage: java -cp FastInfoset.jar FastInfosetBench.java FILE.xml...

import com.sun.xml.fastinfoset.sax.SAXDocumentParser;
import com.sun.xml.fastinfoset.sax.SAXDocumentSerializer;
import java.io.ByteArrayInputStream;
import java.io.ByteArrayOutputStream;
import java.io.File;
import java.lang.management.ManagementFactory;
import java.lang.management.ThreadMXBean;
import java.nio.file.Files;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import javax.xml.parsers.SAXParserFactory;
import org.xml.sax.Attributes;
import org.xml.sax.ContentHandler;
import org.xml.sax.SAXException;
import org.xml.sax.helpers.AttributesImpl;
import org.xml.sax.helpers.DefaultHandler;

public class FastInfosetBench {
    private static final long WARM_UP_NANOSECONDS = 4_000_000_000L;
    private static final long SAMPLE_NANOSECONDS = 50_000_000L;
    private static final int SAMPLES = 31;
    /** Under this many characters our writer enters a string into its tables. */
    private static final int OUR_TABLE_LIMIT = 6;

    private static final ThreadMXBean THREADS = ManagementFactory.getThreadMXBean();

    private interface Pass {
        void run() throws Exception;
    }

    private interface Event {
        void replay(ContentHandler handler) throws SAXException;
    }

    /** The events of a document, kept so that writing can be measured without a parser. */
    private static class Recorder extends DefaultHandler {
        final List<Event> events = new ArrayList<>();
        private final StringBuilder text = new StringBuilder();
        private final boolean keepsWhiteSpace;

        Recorder(boolean keepsWhiteSpace) {
            this.keepsWhiteSpace = keepsWhiteSpace;
        }

        @Override
        public void startPrefixMapping(String prefix, String uri) {
            events.add(handler -> handler.startPrefixMapping(prefix, uri));
        }

        @Override
        public void endPrefixMapping(String prefix) {
            events.add(handler -> handler.endPrefixMapping(prefix));
        }

        @Override
        public void startElement(String uri, String local, String qualified, Attributes attributes) {
            endText();
            Attributes kept = new AttributesImpl(attributes);
            events.add(handler -> handler.startElement(uri, local, qualified, kept));
        }

        @Override
        public void endElement(String uri, String local, String qualified) {
            endText();
            events.add(handler -> handler.endElement(uri, local, qualified));
        }

        @Override
        public void characters(char[] characters, int start, int length) {
            text.append(characters, start, length);
        }

        private void endText() {
            char[] kept = text.toString().toCharArray();
            text.setLength(0);
            if (kept.length == 0 || !keepsWhiteSpace && new String(kept).isBlank()) return;
            events.add(handler -> handler.characters(kept, 0, kept.length));
        }
    }

    /** A serializer as it comes, or one with the limits of our writer. */
    private static SAXDocumentSerializer makeSerializer(boolean ourLimits) {
        SAXDocumentSerializer serializer = new SAXDocumentSerializer();
        if (ourLimits) {
            serializer.setMaxCharacterContentChunkSize(OUR_TABLE_LIMIT);
            serializer.setMaxAttributeValueSize(OUR_TABLE_LIMIT);
        }
        return serializer;
    }

    private static void write(SAXDocumentSerializer serializer, List<Event> events, ByteArrayOutputStream out)
            throws SAXException {
        out.reset();
        serializer.reset();
        serializer.setOutputStream(out);
        serializer.startDocument();
        for (Event event : events) event.replay(serializer);
        serializer.endDocument();
    }

    /** CPU seconds of a pass, ascending: one figure for each sample. Collection of garbage runs in other threads. */
    private static double[] measure(Pass pass) throws Exception {
        long passes = 0;
        long start = System.nanoTime();
        while (System.nanoTime() - start < WARM_UP_NANOSECONDS) {
            pass.run();
            ++passes;
        }
        long perSample = Math.max(1, passes * SAMPLE_NANOSECONDS / WARM_UP_NANOSECONDS);
        double[] seconds = new double[SAMPLES];
        for (int sample = 0; sample < SAMPLES; ++sample) {
            long before = THREADS.getCurrentThreadCpuTime();
            for (long i = 0; i < perSample; ++i) pass.run();
            seconds[sample] = (THREADS.getCurrentThreadCpuTime() - before) / 1e9 / perSample;
        }
        Arrays.sort(seconds);
        return seconds;
    }

    private static void report(String document, String road, Pass pass, int octets) throws Exception {
        double[] seconds = measure(pass);
        System.out.printf("%s %s %.9f %.9f %d%n", document, road, seconds[0], seconds[SAMPLES / 2], octets);
    }

    private static void bench(String document, String suffix, List<Event> events, boolean ourLimits)
            throws Exception {
        ByteArrayOutputStream out = new ByteArrayOutputStream();
        SAXDocumentSerializer serializer = makeSerializer(ourLimits);
        write(serializer, events, out);
        byte[] infoset = out.toByteArray();
        report(document, "JavaWrite" + suffix, () -> write(serializer, events, out), infoset.length);

        SAXDocumentParser parser = new SAXDocumentParser();
        parser.setContentHandler(new DefaultHandler());
        report(document, "JavaRead" + suffix, () -> {
            parser.reset();
            parser.parse(new ByteArrayInputStream(infoset));
        }, infoset.length);
    }

    public static void main(String[] files) throws Exception {
        SAXParserFactory factory = SAXParserFactory.newInstance();
        factory.setNamespaceAware(true);
        for (String file : files) {
            byte[] xml = Files.readAllBytes(new File(file).toPath());
            String document = new File(file).getName().replace(".xml", "");
            for (boolean keepsWhiteSpace : new boolean[] {true, false}) {
                Recorder recorder = new Recorder(keepsWhiteSpace);
                factory.newSAXParser().parse(new ByteArrayInputStream(xml), recorder);
                bench(document, keepsWhiteSpace ? "Indented" : "", recorder.events, /*ourLimits=*/false);
                if (!keepsWhiteSpace) bench(document, "OurLimits", recorder.events, /*ourLimits=*/true);
            }
        }
    }
}
