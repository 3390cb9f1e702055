<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns="http://www.w3.org/1999/xhtml"
    xmlns:s="urn:example:stock" xmlns:t="urn:example:trade" exclude-result-prefixes="s t">
  <xsl:template match="s:item[@t:lot &gt; 3]">
    <tr><td><xsl:value-of select="concat(s:name, '&#9;', t:price, '&#10;&#13;')"/></td></tr>
  </xsl:template>
</xsl:stylesheet>
