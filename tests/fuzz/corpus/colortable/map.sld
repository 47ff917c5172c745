<s:SLD xmlns:s='x'><s:ColorMap type='intervals'><s:ColorMapEntry color='#000000' quantity='0' opacity='0.5'/><s:ColorMapEntry color='#c80000' quantity='10'/></s:ColorMap></s:SLD>
