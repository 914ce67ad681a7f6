# Independent composition of ".sta" lines from reference values.
import math
def E(v,w=12,e=2):
    if v!=v: return 'NaN'.rjust(w)
    if v==0: m,x=0,0
    else:
        x=math.floor(math.log10(abs(v)))+1
        m=round(abs(v)/10**x,4)
        if m>=1.0: m/=10; x+=1
        m=round(m*1e4)
    return (('-' if v<0 else '')+'0.%04dE%s%0*d'%(m,'-' if x<0 else '+',e,abs(x))).rjust(w)
def F(v,w=12,d=4):
    if v!=v: return 'NaN'.rjust(w)
    if v in (float('inf'),): return 'Infinity'.rjust(w)
    return ('%.*f'%(d,v)).rjust(w)
HEAD='     TraitID           TraitName  SampleSize        Mean    Variance    StdError    Skewness    Kurtosis     Minimum     Maximum       Range      W-test     P-value'
def row(t,name,s,W,P):
    return '%12d'%t+' '+name.rjust(19)+'%12d'%s['n']+''.join(F(s[k]) for k in ('mean','var','sd','skew','kurt','min','max','range'))+F(W)+E(P)
def missing_row(t,name):
    return '%12d'%t+' '+name.rjust(19)+'%12d'%0+F(-9999.0)*9+E(-9999.0)
def src(label,df,vals):
    out=label.rjust(15)+'%15d'%df
    for i,v in enumerate(vals):
        out+= E(v,15,3) if i==3 else F(v,15)
    return out
# No kept line: no group, model DF -1, error DF 0; every sum of squares
# is 0, the model mean square 0 / -1 = -0.0, the rest not a number.
def empty_oneway_lines():
    nan=float('nan')
    return ['    R-square(%) AdjustedR^2(%)   Est.Std.Dev.           Mean',
            ''.join(F(v,15) for v in (nan,nan,nan,nan)),'',
            '         Source             DF             SS             MS              F              P',
            src('Among Groups',-1,[0.0,-0.0,nan,nan]),
            src('Within Groups',0,[0.0,nan]),
            src('Total',-1,[0.0]),'']
def oneway_lines(o):
    return ['    R-square(%) AdjustedR^2(%)   Est.Std.Dev.           Mean',
            ''.join(F(v,15) for v in (o['r2'],o['adj'],o['sd'],o['mean'])),'',
            '         Source             DF             SS             MS              F              P',
            src('Among Groups',o['df'][0],[o['ss'][0],o['ms'][0],o['F'],o['P']]),
            src('Within Groups',o['df'][1],[o['ss'][1],o['ms'][1]]),
            src('Total',o['df'][2],[o['ss'][2]]),'']
def twoway_lines(t):
    L=['   R-square (%) AdjustedR^2(%) Est. Std. Dev.           Mean',
       ''.join(F(v,15) for v in (t['r2'],t['adj'],t['sd'],t['mean'])),'',
       '         Source             DF             SS             MS              F              P',
       src('Model',t['model']['df'],[t['model'][k] for k in ('ss','ms','F','P')]),
       src('Error',t['error']['df'],[t['error']['ss'],t['error']['ms']]),
       src('Total',t['total']['df'],[t['total']['ss']]),'','Variation due to the model',
       '         Source             DF             SS             MS              F              P']
    for lab,k in (('A (Lines)','A'),('B (Envs)','B'),('AxB','AxB')):
        L.append(src(lab,t[k]['df'],[t[k][x] for x in ('ss','ms','F','P')]))
    return L+['']
