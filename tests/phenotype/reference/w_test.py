# W test in Royston's 1982 form (AS 181 with AS 177 scores), written in
# float64 from the published formulas, to check the W and P of ".sta".
import math
from scipy.stats import norm
TAB={3:[0.70710677],4:[0.6869,0.1678],5:[0.6647,0.2412],6:[0.6431,0.2806,0.0875]}
L={4:[-1.26233,1.87969,0.0649583,-0.0475604,-0.0139682],5:[-2.28135,2.26186,0,0,-0.00865763],6:[-3.30623,2.76287,-0.83484,1.20857,-0.50759]}
H={4:[-0.287696,1.78953,-0.180114,0,0],5:[-1.63638,5.60924,-3.63738,1.08439,0],6:[-5.991908,21.04575,-24.58061,13.78661,-2.835295]}
def correc(i,n):
    C1=[9.5,28.7,1.9,0,-7,-6.2,-1.6];C2=[-6195,-9569,-6728,-17614,-8278,-3570,1075];C3=[93380,175160,410400,2157000,2376000,2065000,2065000]
    if i*n==4: return 1.9e-5
    if i>7 or n>40: return 0.0
    if i!=4 and n>20: return 0.0
    w=1.0/n**2
    return (C1[i-1]+w*(C2[i-1]+w*C3[i-1]))*1e-6
def score(i,n):
    if i<=3:
        p=[0.419885,0.450536,0.456936][i-1];g=[0.474798,0.469051,0.208597][i-1];l=[0.282765,0.304856,0.407708][i-1]
        d1=[0.112063,0.12177,0.239299][i-1];d2=[0.080122,0.111348,-0.211867][i-1]
    else:
        p=0.468488;g=0.259784;l=0.414093-0.283833/(i-0.106136);d1=0.215159;d2=-0.115049
    e1=(i-p)/(n+g); e2=e1**l
    return -norm.ppf(e1-correc(i,n)+e2*(d1+e2*d2)/n)
def poly(c,u): return sum(ci*u**k for k,ci in enumerate(c))
def swilk(x):
    x=sorted(x); n=len(x); m=sum(x)/n; ss=sum((v-m)**2 for v in x)
    a={}
    if n<=6:
        for i,v in enumerate(TAB[n]): a[i+1]=v
        Q=0.5
    else:
        Q=0.0
        for i in range(2,n//2+1): a[i]=score(i,n); Q+=a[i]**2
    A=sum(a[i]*(x[n-i]-x[i-1]) for i in range(2,n//2+1))
    if n>=7:
        v=n if n>20 else n-1
        f=((6*v+7)/(6*v+13))*math.sqrt(((v+1)/(v+2))**(v-2)*2.7182817/(v+2))
        a[1]=math.sqrt(2*f*Q/(1-2*f)); Q+=a[1]**2
    A+=a[1]*(x[n-1]-x[0])
    if ss==0: return 0.0,1.0
    W=A*A/(ss*2*Q)
    if n==3: P=(math.atan(math.sqrt(W/(1-W)))-1.0471976)*1.9098593 if W<1 else 1.0
    elif n<=6:
        y=math.log((W-a[1]**2*n/(n-1))/(1-W))
        if y<=1.4: c=L[n]; z=math.exp(c[0]+c[1]*y+y*y*(c[2]+y*(c[3]+y*c[4])))
        else:
            y=math.log(y); c=H[n]; z=math.exp(math.exp(c[0]+c[1]*y+y*y*(c[2]+y*(c[3]+y*c[4]))))
        P=(math.asin(math.sqrt((z+0.75)/(z+1.0)))-1.0471976)*1.9098593
    else:
        if n<=20: u=math.log(n)-3; lam=[0.118898,0.133414,0.327907]; mu=[-0.37542,-0.492145,-1.124332,-0.199422]; sg=[-3.15805,0.729399,3.01855,1.558776]
        else: u=math.log(n)-5; lam=[0.480385,0.318828,0,-0.0241665,0.00879701,0.002989646]; mu=[-1.91487,-1.37888,-0.04183209,0.1066339,-0.03513666,-0.01504614]; sg=[-3.73538,-1.015807,-0.331885,0.1773538,-0.01638782,-0.03215018,0.003852646]
        Z=((1-W)**poly(lam,u)-math.exp(poly(mu,u)))/math.exp(poly(sg,u))
        P=1-norm.cdf(Z)
    return W,P
